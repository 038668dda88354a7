// Cards stay within the available area of their screen: a card too tall for it scrolls, its buttons in
// sight; a card that fits is left as it is. The suite's screens are a 1366 × 768 laptop and a
// 1024 × 600 netbook (tests/support/screens.json).

#include "admin_fixture.h"
#include "modal_driver.h"
#include "requisits_fm.h"

#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>

namespace {

struct FitCase
{
    const char *screen;
    QPoint placedAt; // where the card would stand, relative to its screen
    bool scrolls;
};

TEST_F(AdminTest, TheShopsCardKeepsItsButtonsWithinTheScreen)
{
    ASSERT_EQ(QGuiApplication::screens().size(), 2) << "the suite runs with the screens of screens.json";
    // 24 fields: 692 pixels and a title bar fit 768, not 600; placed low, the card is moved up.
    const FitCase cases[] = {{"Laptop", {300, 0}, false}, {"Laptop", {300, 500}, false}, {"Netbook", {0, 0}, true}};
    for (const FitCase &c : cases) {
        QScreen *screen = nullptr;
        for (QScreen *s : QGuiApplication::screens())
            if (s->name() == QLatin1String(c.screen))
                screen = s;
        ASSERT_TRUE(screen) << c.screen;
        dm->spRequisitsOpen.Open();
        TRequisitsFM card(&dm->dsRequisitsOpen, "spCustEdit");
        card.setScreen(screen);
        card.move(screen->geometry().topLeft() + c.placedAt);
        ModalDriver driver;
        driver.Then([&](QWidget *) {
            const QRect area = screen->availableGeometry();
            EXPECT_TRUE(area.contains(card.frameGeometry())) << c.screen << " " << c.placedAt.y();
            for (QWidget *button : {static_cast<QWidget *>(card.AdvGlowButton1), static_cast<QWidget *>(card.AdvGlowButton2)})
                EXPECT_TRUE(area.contains(QRect(button->mapToGlobal(QPoint(0, 0)), button->size()))) << c.screen;
            EXPECT_EQ(card.ScrollBox() != nullptr, c.scrolls) << c.screen;
            if (card.ScrollBox()) {
                // The last field can be scrolled to and typed into.
                QWidget *last = card.gbValues->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).last();
                card.ScrollBox()->ensureWidgetVisible(last);
                const QRect shown(last->mapTo(card.ScrollBox()->viewport(), QPoint(0, 0)), last->size());
                EXPECT_TRUE(card.ScrollBox()->viewport()->rect().contains(shown));
            }
            card.AdvGlowButton2->click();
        });
        card.ShowModal();
        EXPECT_EQ(driver.Ran(), 1);
        dm->spRequisitsOpen.Close();
    }
}

} // namespace

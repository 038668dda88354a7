#include "rtf_document.h"

#include "word_processor.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QTemporaryFile>
#include <QStringDecoder>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string_view>
#include <unordered_map>

// A single-byte code page both ways.
struct RtfCodeTable
{
    char16_t chars[256];
    QHash<char16_t, uchar> bytes; // the upper half only
};

namespace {

// What a destination group means for the text.
enum Dest : quint8 { Body, Skip, Story };

// Control words that something depends on; the order is that of kWords.
enum WordId : quint16 {
    wOther, wAnsi, wMac, wPc, wPca, wAnsicpg, wDeff, wF, wFcharset, wCpg, wPlain, wU, wUc, wBin, wPar, wSect,
    wPage, wLine, wTab, wCell, wRow, wNestcell, wNestrow, wTrowd, wPard, wIntbl, wItap, wIrow, wIrowband,
    wLastrow, wBkmkstart, wBkmkend, wFonttbl, wFs
};

struct WordInfo
{
    std::string_view name;
    Dest dest;
    char16_t ch; // the character the word stands for in the text
};

constexpr WordInfo kWords[] = {
    {"", Body, 0}, {"ansi", Body, 0}, {"mac", Body, 0}, {"pc", Body, 0}, {"pca", Body, 0},
    {"ansicpg", Body, 0}, {"deff", Body, 0}, {"f", Body, 0}, {"fcharset", Body, 0}, {"cpg", Body, 0},
    {"plain", Body, 0}, {"u", Body, 0}, {"uc", Body, 0}, {"bin", Body, 0}, {"par", Body, u'\r'},
    {"sect", Body, u'\r'}, {"page", Body, u'\r'}, {"line", Body, u'\n'}, {"tab", Body, u'\t'},
    {"cell", Body, 0x7}, {"row", Body, 0x7}, {"nestcell", Body, u'\t'}, {"nestrow", Body, u'\n'},
    {"trowd", Body, 0}, {"pard", Body, 0}, {"intbl", Body, 0}, {"itap", Body, 0}, {"irow", Body, 0},
    {"irowband", Body, 0}, {"lastrow", Body, 0}, {"bkmkstart", Skip, 0}, {"bkmkend", Skip, 0},
    {"fonttbl", Skip, 0}, {"fs", Body, 0},
    // characters
    {"emdash", Body, 0x2014}, {"endash", Body, 0x2013}, {"emspace", Body, 0x2003}, {"enspace", Body, 0x2002},
    {"qmspace", Body, 0x2005}, {"bullet", Body, 0x2022}, {"lquote", Body, 0x2018}, {"rquote", Body, 0x2019},
    {"ldblquote", Body, 0x201C}, {"rdblquote", Body, 0x201D}, {"zwj", Body, 0x200D}, {"zwnj", Body, 0x200C},
    {"ltrmark", Body, 0x200E}, {"rtlmark", Body, 0x200F}, {"zwbo", Body, 0x200B}, {"zwnbo", Body, 0x2060},
    // destinations that hold no text of the document
    {"colortbl", Skip, 0}, {"stylesheet", Skip, 0}, {"info", Skip, 0}, {"pict", Skip, 0}, {"object", Skip, 0},
    {"objdata", Skip, 0}, {"listtable", Skip, 0}, {"listoverridetable", Skip, 0}, {"revtbl", Skip, 0},
    {"rsidtbl", Skip, 0}, {"generator", Skip, 0}, {"xmlnstbl", Skip, 0}, {"themedata", Skip, 0},
    {"colorschememapping", Skip, 0}, {"datastore", Skip, 0}, {"latentstyles", Skip, 0}, {"fldinst", Skip, 0},
    {"listtext", Skip, 0}, {"pntext", Skip, 0}, {"pn", Skip, 0}, {"filetbl", Skip, 0}, {"nonshppict", Skip, 0},
    {"shpinst", Skip, 0}, {"annotation", Skip, 0}, {"atnid", Skip, 0}, {"atnauthor", Skip, 0},
    {"title", Skip, 0}, {"author", Skip, 0}, {"operator", Skip, 0}, {"keywords", Skip, 0},
    {"comment", Skip, 0}, {"doccomm", Skip, 0}, {"userprops", Skip, 0}, {"fchars", Skip, 0},
    {"lchars", Skip, 0}, {"pgdsctbl", Skip, 0}, {"mmathPr", Skip, 0},
    // destinations with a text of their own
    {"header", Story, 0}, {"headerl", Story, 0}, {"headerr", Story, 0}, {"headerf", Story, 0},
    {"footer", Story, 0}, {"footerl", Story, 0}, {"footerr", Story, 0}, {"footerf", Story, 0},
    {"footnote", Story, 0},
};
static_assert(kWords[wPar].name == "par" && kWords[wLastrow].name == "lastrow" && kWords[wFonttbl].name == "fonttbl"
              && kWords[wFs].name == "fs");

quint16 wordId(std::string_view name)
{
    static const auto ids = [] {
        std::unordered_map<std::string_view, quint16> map;
        for (quint16 i = 1; i < std::size(kWords); ++i)
            map.emplace(kWords[i].name, i);
        return map;
    }();
    auto found = ids.find(name);
    return found == ids.end() ? wOther : found->second;
}

constexpr char16_t kStoryEdge = 0xFFFF; // between the main text and a header, footer or footnote
constexpr char16_t kCellEnd = 0x7;

const char *codepageName(int codepage)
{
    switch (codepage) {
    case 437: return "IBM437";
    case 850: return "IBM850";
    case 852: return "IBM852";
    case 866: return "IBM866";
    case 874: return "windows-874";
    case 1250: return "windows-1250";
    case 1251: return "windows-1251";
    case 1252: return "windows-1252";
    case 1253: return "windows-1253";
    case 1254: return "windows-1254";
    case 1255: return "windows-1255";
    case 1256: return "windows-1256";
    case 1257: return "windows-1257";
    case 1258: return "windows-1258";
    case 10000: return "macintosh";
    case 20866: return "KOI8-R";
    default: return nullptr; // multi-byte and unknown pages: read as the document's page
    }
}

// The code page of a font's \fcharset; 0 for the document's own.
int charsetCodepage(int charset)
{
    switch (charset) {
    case 77: return 10000;
    case 161: return 1253;
    case 162: return 1254;
    case 163: return 1258;
    case 177: return 1255;
    case 178: return 1256;
    case 186: return 1257;
    case 204: return 1251;
    case 222: return 874;
    case 238: return 1250;
    case 255: return 437;
    default: return 0;
    }
}

const RtfCodeTable *codeTable(int codepage)
{
    static QMutex mutex;
    static std::map<int, std::unique_ptr<RtfCodeTable>> tables;
    QMutexLocker lock(&mutex);
    auto &slot = tables[codepage];
    if (slot)
        return slot.get();
    slot = std::make_unique<RtfCodeTable>();
    const char *name = codepageName(codepage);
    QStringDecoder decoder(name ? name : "windows-1252", QStringConverter::Flag::Stateless);
    for (int b = 0; b < 256; ++b) {
        char16_t ch = b < 0x80 ? char16_t(b) : char16_t(0xFFFD);
        if (b >= 0x80 && decoder.isValid()) {
            const char byte = char(b);
            const QString decoded = decoder.decode(QByteArrayView(&byte, 1));
            if (decoded.size() == 1)
                ch = decoded.at(0).unicode();
        } else if (b >= 0x80) {
            ch = char16_t(b); // Latin-1 when the system has no such page
        }
        slot->chars[b] = ch;
        if (b >= 0x80 && ch != 0xFFFD && !slot->bytes.contains(ch))
            slot->bytes.insert(ch, uchar(b));
    }
    return slot.get();
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

EWordProcessorError damaged(const QString &name, const QString &what)
{
    return EWordProcessorError(QStringLiteral("Документ RTF «%1» повреждён: %2").arg(name, what));
}

} // namespace

// Follows the group state through the tokens: which destination a token is in, the font and whether
// the paragraph belongs to a table.
class RtfDocument::Walker
{
public:
    struct State
    {
        Dest dest = Body;
        bool intbl = false;
        int font = -1;
    };

    explicit Walker(const RtfDocument &doc) : m_doc(doc) { state.font = doc.m_defaultFont; }

    // Takes the token in; afterwards state is what holds at it and storyEdge tells whether the text of
    // a header, footer or footnote begins or ends here.
    void Step(const Token &t)
    {
        storyEdge = false;
        switch (t.kind) {
        case Open:
            m_stack.push_back(state);
            ++depth;
            m_groupStart = true;
            return;
        case Close:
            if (m_stack.empty())
                return;
            storyEdge = state.dest == Story && m_stack.back().dest != Story;
            state = m_stack.back();
            m_stack.pop_back();
            --depth;
            m_groupStart = false;
            return;
        case Space:
        case Removed:
            return;
        default:
            break;
        }
        if (m_groupStart) {
            m_groupStart = false;
            if (state.dest != Skip) {
                const Dest dest = t.kind == Symbol && t.param == '*' ? Skip
                                  : t.kind == Word                  ? kWords[t.id].dest
                                                                    : Body;
                if (dest == Skip || (dest == Story && state.dest == Body)) {
                    storyEdge = dest == Story;
                    state.dest = dest;
                }
            }
        }
        if (t.kind != Word)
            return;
        switch (t.id) {
        case wF: state.font = t.param; break;
        case wPlain: state.font = m_doc.m_defaultFont; break;
        case wPard: state.intbl = false; break;
        case wIntbl: state.intbl = true; break;
        case wItap: state.intbl = t.param > 0; break;
        default: break;
        }
    }

    State state;
    int depth = 0;
    bool storyEdge = false;

private:
    const RtfDocument &m_doc;
    std::vector<State> m_stack;
    bool m_groupStart = false;
};

RtfDocument::RtfDocument(const QByteArray &bytes, const QString &name)
    : m_bytes(bytes), m_fileSize(quint32(bytes.size())), m_name(name)
{
    Tokenize();
    ReadHeader();
}

RtfDocument RtfDocument::Load(const QString &fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile())
        throw EWordProcessorError(QStringLiteral("Файл «%1» не найден").arg(fileName));
    if (!file.open(QIODevice::ReadOnly))
        throw EWordProcessorError(QStringLiteral("Не удалось открыть файл «%1»: %2").arg(fileName, file.errorString()));
    return RtfDocument(file.readAll(), fileName);
}

void RtfDocument::Tokenize()
{
    const char *p = m_bytes.constData();
    const qsizetype n = m_bytes.size();
    if (n >= std::numeric_limits<quint32>::max() / 2)
        throw EWordProcessorError(QStringLiteral("Документ «%1» слишком велик").arg(m_name));
    auto push = [this](Kind kind, qsizetype at, qsizetype length, int param = 0, quint16 id = 0, bool hasParam = false) {
        m_tokens.push_back(Token{quint32(at), quint32(length), param, id, kind, hasParam});
    };

    qsizetype i = 0;
    while (i < n && (p[i] == ' ' || p[i] == '\t' || p[i] == '\r' || p[i] == '\n'))
        ++i;
    if (n - i < 5 || std::memcmp(p + i, "{\\rtf", 5) != 0)
        throw EWordProcessorError(QStringLiteral("Файл «%1» не является документом RTF").arg(m_name));
    if (i > 0)
        push(Space, 0, i);

    m_tokens.reserve(n / 4 + 64); // room for the rows a document gets
    std::vector<int> ucStack;
    int uc = 1;   // bytes that stand in for each \u character
    int skip = 0; // of those, still to come
    int depth = 0;
    while (i < n) {
        const char c = p[i];
        if (c == '{') {
            push(Open, i++, 1);
            ucStack.push_back(uc);
            skip = 0;
            ++depth;
        } else if (c == '}') {
            push(Close, i++, 1);
            uc = ucStack.back();
            ucStack.pop_back();
            skip = 0;
            if (--depth == 0) {
                if (i < n)
                    push(Space, i, n - i); // whatever follows the document is kept, not read
                i = n;
            }
        } else if (c == '\r' || c == '\n') {
            qsizetype j = i;
            while (j < n && (p[j] == '\r' || p[j] == '\n'))
                ++j;
            push(Space, i, j - i);
            i = j;
        } else if (c == '\\') {
            if (i + 1 >= n)
                throw damaged(m_name, QStringLiteral("файл обрывается на середине команды"));
            const char d = p[i + 1];
            if (isLetter(d)) {
                qsizetype j = i + 1;
                while (j < n && isLetter(p[j]) && j - i <= 32)
                    ++j;
                const quint16 id = wordId(std::string_view(p + i + 1, size_t(j - i - 1)));
                bool negative = false, hasParam = false;
                qint64 value = 0;
                if (j + 1 < n && p[j] == '-' && isDigit(p[j + 1])) {
                    negative = true;
                    ++j;
                }
                while (j < n && isDigit(p[j])) {
                    hasParam = true;
                    value = std::min<qint64>(value * 10 + (p[j] - '0'), 0x7FFFFFFF);
                    ++j;
                }
                if (j < n && p[j] == ' ')
                    ++j;
                const int param = int(negative ? -value : value);
                if (id == wBin && hasParam) {
                    push(Word, i, j - i, param, id, hasParam);
                    if (param < 0 || j + param > n)
                        throw damaged(m_name, QStringLiteral("двоичные данные обрываются"));
                    push(Binary, j, param);
                    i = j + param;
                    skip = 0;
                    continue;
                }
                push(Word, i, j - i, param, id, hasParam);
                i = j;
                skip = 0;
                if (id == wU)
                    skip = uc;
                else if (id == wUc)
                    uc = std::clamp(hasParam ? param : 1, 0, 16);
            } else if (d == '\'') {
                const int hi = i + 2 < n ? hexValue(p[i + 2]) : -1;
                const int lo = i + 3 < n ? hexValue(p[i + 3]) : -1;
                if (hi < 0 || lo < 0)
                    throw damaged(m_name, QStringLiteral("неверный шестнадцатеричный символ в позиции %1").arg(i));
                push(skip > 0 ? Fallback : Hex, i, 4, hi * 16 + lo);
                skip = std::max(0, skip - 1);
                i += 4;
            } else {
                push(skip > 0 ? Fallback : Symbol, i, 2, uchar(d));
                skip = std::max(0, skip - 1);
                i += 2;
            }
        } else {
            qsizetype j = i;
            while (j < n && p[j] != '\\' && p[j] != '{' && p[j] != '}' && p[j] != '\r' && p[j] != '\n')
                ++j;
            if (skip > 0) {
                const qsizetype taken = std::min<qsizetype>(skip, j - i);
                push(Fallback, i, taken);
                skip -= int(taken);
                i += taken;
                continue;
            }
            push(Chars, i, j - i);
            i = j;
        }
    }
    if (depth != 0)
        throw damaged(m_name, QStringLiteral("файл обрезан, не закрыто групп: %1").arg(depth));
}

void RtfDocument::ReadHeader()
{
    QHash<int, int> fontPages;
    QHash<int, bool> explicitPage;
    int depth = 0, fontTableDepth = -1, font = -1, documentPage = 0, fallbackPage = 1252;
    for (const Token &t : m_tokens) {
        if (t.kind == Open) {
            ++depth;
        } else if (t.kind == Close) {
            if (depth == fontTableDepth)
                fontTableDepth = -1;
            --depth;
        } else if (t.kind == Word) {
            if (t.id == wFonttbl) {
                fontTableDepth = depth;
            } else if (fontTableDepth >= 0) {
                if (t.id == wF) {
                    font = t.param;
                } else if (t.id == wFcharset && !explicitPage.value(font)) {
                    if (const int page = charsetCodepage(t.param))
                        fontPages.insert(font, page);
                } else if (t.id == wCpg && codepageName(t.param)) {
                    fontPages.insert(font, t.param);
                    explicitPage.insert(font, true);
                }
            } else if (depth == 1) {
                switch (t.id) {
                case wAnsicpg: documentPage = t.param; break;
                case wMac: fallbackPage = 10000; break;
                case wPc: fallbackPage = 437; break;
                case wPca: fallbackPage = 850; break;
                case wDeff: m_defaultFont = t.param; break;
                default: break;
                }
            }
        }
    }
    m_codepage = documentPage && codepageName(documentPage) ? documentPage : fallbackPage;
    m_codeTable = codeTable(m_codepage);
    for (auto it = fontPages.cbegin(); it != fontPages.cend(); ++it)
        if (it.value() != m_codepage)
            m_fontTables.insert(it.key(), codeTable(it.value()));
}

const RtfCodeTable *RtfDocument::CodeTableOf(int font) const
{
    if (!m_fontTables.isEmpty())
        if (const RtfCodeTable *table = m_fontTables.value(font))
            return table;
    return m_codeTable;
}

char32_t RtfDocument::VisibleChar(const Token &t, int font) const
{
    switch (t.kind) {
    case Hex:
        return CodeTableOf(font)->chars[t.param & 0xFF];
    case Word:
        if (t.id == wU)
            return char32_t(t.param < 0 ? t.param + 65536 : t.param);
        return kWords[t.id].ch;
    case Symbol:
        switch (t.param) {
        case '~': return 0xA0;
        case '-': return 0xAD;
        case '_': return 0x2011;
        case '\\':
        case '{':
        case '}': return char32_t(t.param);
        case '\r':
        case '\n': return u'\r';
        default: return 0;
        }
    default:
        return 0;
    }
}

// Text of a cell: what an edit of the cell removes. Table marks and destinations are not.
bool RtfDocument::IsTextual(const Token &t)
{
    switch (t.kind) {
    case Chars:
    case Hex:
    case Fallback:
        return true;
    case Symbol:
        return t.param == '~' || t.param == '-' || t.param == '_' || t.param == '\\' || t.param == '{'
               || t.param == '}' || t.param == '\r' || t.param == '\n';
    case Word:
        return t.id == wU
               || (kWords[t.id].ch != 0 && t.id != wCell && t.id != wRow && t.id != wNestcell && t.id != wNestrow
                   && t.id != wSect && t.id != wPage);
    default:
        return false;
    }
}

QByteArray RtfDocument::ToRtf() const
{
    QByteArray out;
    out.reserve(m_bytes.size() + 1024);
    const char *data = m_bytes.constData();
    bool wordOpen = false; // the last control word has no delimiter of its own
    for (const Token &t : m_tokens) {
        if (t.kind == Removed || t.length == 0)
            continue;
        const char *s = data + t.offset;
        if (wordOpen && t.kind != Binary && (isLetter(s[0]) || isDigit(s[0]) || s[0] == ' ' || s[0] == '-'))
            out.append(' ');
        out.append(s, t.length);
        wordOpen = t.kind == Word && s[t.length - 1] != ' ';
    }
    return out;
}

void RtfDocument::Save(const QString &fileName) const
{
    // A temporary file beside the target, renamed over it: the old file stays whole on any failure. No
    // flush to the disk: the document is opened at once, and a lost document is simply made again.
    const QFileInfo target(fileName);
    QTemporaryFile file(target.absolutePath() + QStringLiteral("/.") + target.fileName() + QStringLiteral(".XXXXXX"));
    file.setAutoRemove(true);
    const QByteArray bytes = ToRtf();
    bool written = file.open() && file.write(bytes) == bytes.size() && file.flush();
    QString error = file.errorString();
    if (written) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup
                            | QFileDevice::ReadOther);
        written = std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(fileName).constData()) == 0;
        if (written)
            file.setAutoRemove(false);
        else
            error = QString::fromLocal8Bit(std::strerror(errno));
    }
    if (!written)
        throw EWordProcessorError(QStringLiteral("Не удалось сохранить документ в файл «%1»: %2").arg(fileName, error));
}

// Rows end at \row; a table is a run of rows with no paragraph outside a table between them. A row
// begins at its \trowd or \pard, or else where the paragraph before it ended, so that it holds its
// definition and formatting and is balanced in braces.
const std::vector<RtfDocument::Table> &RtfDocument::Tables() const
{
    if (m_tables)
        return *m_tables;
    std::vector<Table> tables;
    Table table;
    Row row;
    Walker w(*this);
    int boundary = 0, boundaryDepth = 0; // where the text before a table's first row ended
    int start = -1, startDepth = 0;      // a \trowd or \pard that can begin the next row
    bool inRow = false, closing = false;
    int rowDepth = 0;

    auto finishRow = [&](int end) {
        row.end = end;
        table.rows.push_back(std::move(row));
        row = Row();
        inRow = closing = false;
        boundary = end;
        boundaryDepth = rowDepth;
        start = -1;
    };
    auto finishTable = [&] {
        if (!table.rows.empty())
            tables.push_back(std::move(table));
        table = Table();
    };

    const int n = int(m_tokens.size());
    for (int i = 0; i < n; ++i) {
        const Token &t = m_tokens[i];
        const int before = w.depth;
        w.Step(t);
        if (t.kind == Close) {
            if (closing && w.depth <= rowDepth) {
                finishRow(i + 1);
            } else if (inRow && w.depth < rowDepth) {
                // the row began inside a group that ends before it: take the group's start
                int at = row.begin, level = 0;
                while (at > 0) {
                    --at;
                    if (m_tokens[at].kind == Close)
                        ++level;
                    else if (m_tokens[at].kind == Open && level-- == 0)
                        break;
                }
                row.begin = at;
                rowDepth = w.depth;
            } else if (!inRow) {
                if (i == boundary || w.depth < boundaryDepth) {
                    boundary = i + 1;
                    boundaryDepth = w.depth;
                }
                if (start >= 0 && w.depth < startDepth)
                    start = -1;
            }
            continue;
        }
        if (w.state.dest != Body || closing)
            continue;
        const bool paragraphEnd = (t.kind == Word && (t.id == wPar || t.id == wSect || t.id == wPage))
                                  || (t.kind == Symbol && (t.param == '\r' || t.param == '\n'));
        if (paragraphEnd) {
            if (!inRow && !w.state.intbl) {
                finishTable();
                boundary = i + 1;
                boundaryDepth = w.depth;
                start = -1;
            }
        } else if (t.kind == Word && (t.id == wTrowd || t.id == wPard)) {
            if (!inRow && start < 0) {
                start = i;
                startDepth = before;
            }
        } else if (t.kind == Word && t.id == wCell) {
            if (!inRow) {
                inRow = true;
                row.begin = start >= 0 ? start : boundary;
                rowDepth = start >= 0 ? startDepth : boundaryDepth;
            }
            row.cells.push_back(i);
        } else if (t.kind == Word && t.id == wRow && inRow) {
            if (w.depth <= rowDepth)
                finishRow(i + 1);
            else
                closing = true;
        }
    }
    finishTable();
    m_tables = std::move(tables);
    return *m_tables;
}

int RtfDocument::TableCount() const
{
    return int(Tables().size());
}

int RtfDocument::RowCount(int table) const
{
    if (table < 1 || table > TableCount())
        throw EWordProcessorError(
            QStringLiteral("В документе нет таблицы номер %1 (таблиц в нём: %2)").arg(table).arg(TableCount()));
    return int(Tables()[table - 1].rows.size());
}

const RtfDocument::Row &RtfDocument::RowAt(int table, int row) const
{
    const int rows = RowCount(table);
    if (row < 1 || row > rows)
        throw EWordProcessorError(
            QStringLiteral("В таблице %1 нет строки номер %2 (строк в ней: %3)").arg(table).arg(row).arg(rows));
    return Tables()[table - 1].rows[row - 1];
}

int RtfDocument::ColumnCount(int table, int row) const
{
    return int(RowAt(table, row).cells.size());
}

int RtfDocument::CellStart(const Row &row, int column) const
{
    return column == 1 ? row.begin : row.cells[column - 2] + 1;
}

const RtfDocument::Stream &RtfDocument::VisibleStream() const
{
    if (m_streamValid)
        return m_stream;
    Stream &s = m_stream;
    s.chars.resize(0);
    s.refs.clear();
    s.chars.reserve(qsizetype(m_tokens.size()));
    s.refs.reserve(m_tokens.size());
    Walker w(*this);
    const char *data = m_bytes.constData();
    for (quint32 i = 0; i < m_tokens.size(); ++i) {
        const Token &t = m_tokens[i];
        w.Step(t);
        if (w.storyEdge) {
            s.chars.append(QChar(kStoryEdge));
            s.refs.emplace_back(i, 0);
        }
        if (w.state.dest == Skip)
            continue;
        if (t.kind == Chars) {
            const RtfCodeTable *table = CodeTableOf(w.state.font);
            for (quint32 b = 0; b < t.length; ++b) {
                s.chars.append(QChar(table->chars[uchar(data[t.offset + b])]));
                s.refs.emplace_back(i, b);
            }
        } else if (const char32_t c = VisibleChar(t, w.state.font)) {
            for (QChar unit : QChar::fromUcs4(c)) {
                s.chars.append(unit);
                s.refs.emplace_back(i, 0);
            }
        }
    }
    m_streamValid = true;
    return s;
}

QString RtfDocument::Text() const
{
    QString text;
    for (QChar c : VisibleStream().chars) {
        if (c == kStoryEdge || c == QChar(0xAD))
            continue;
        text.append(c == u'\r' ? QChar(u'\n') : c);
    }
    return text;
}

QString RtfDocument::CellText(int table, int row, int column) const
{
    const Row &r = RowAt(table, row);
    if (column < 1 || column > int(r.cells.size()))
        throw EWordProcessorError(QStringLiteral("В строке %1 таблицы %2 нет столбца номер %3 (столбцов в ней: %4)")
                                      .arg(row).arg(table).arg(column).arg(r.cells.size()));
    const quint32 first = quint32(CellStart(r, column)), last = quint32(r.cells[column - 1]);
    const Stream &s = VisibleStream();
    auto at = std::lower_bound(s.refs.begin(), s.refs.end(), first,
                               [](const std::pair<quint32, quint32> &ref, quint32 token) { return ref.first < token; });
    QString text;
    for (; at != s.refs.end() && at->first < last; ++at) {
        const QChar c = s.chars.at(at - s.refs.begin());
        if (c != kStoryEdge && c != QChar(0xAD) && c != QChar(kCellEnd))
            text.append(c == u'\r' ? QChar(u'\n') : c);
    }
    return text;
}

RtfDocument::Token RtfDocument::AddToken(Kind kind, QByteArrayView raw, int param, quint16 id, bool hasParam)
{
    const Token t{quint32(m_bytes.size()), quint32(raw.size()), param, id, kind, hasParam};
    m_bytes.append(raw);
    return t;
}

RtfDocument::Token RtfDocument::AddWord(quint16 id, int param, bool hasParam)
{
    char raw[48];
    const std::string_view name = kWords[id].name;
    raw[0] = '\\';
    std::memcpy(raw + 1, name.data(), name.size());
    int length = 1 + int(name.size());
    if (hasParam)
        length += std::snprintf(raw + length, sizeof raw - size_t(length), "%d", param);
    return AddToken(Word, QByteArrayView(raw, length), param, id, hasParam);
}

// The tokens of a text as the engine writes it: ASCII as is, others as \uN with the code page's byte
// (or "?") for readers without Unicode, breaks as \line, in a group of its own when it sets the size.
std::vector<RtfDocument::Token> RtfDocument::Encode(const QString &text, int halfPoints)
{
    std::vector<Token> out;
    if (text.isEmpty())
        return out;
    bool wide = false;
    for (QChar c : text)
        wide = wide || c.unicode() >= 0x7F;
    const bool group = halfPoints > 0 || wide;
    if (group)
        out.push_back(AddToken(Open, "{"));
    if (halfPoints > 0)
        out.push_back(AddWord(wFs, halfPoints, true));
    if (wide)
        out.push_back(AddWord(wUc, 1, true));
    QByteArray run;
    auto flush = [&] {
        if (!run.isEmpty())
            out.push_back(AddToken(Chars, run));
        run.clear();
    };
    for (int i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (c >= 0x20 && c < 0x7F && c != '\\' && c != '{' && c != '}') {
            run.append(char(c));
            continue;
        }
        flush();
        if (c == '\\' || c == '{' || c == '}') {
            const char symbol[] = {'\\', char(c)};
            out.push_back(AddToken(Symbol, QByteArrayView(symbol, 2), c));
        } else if (c == '\r' || c == '\n' || c == 0x0B || c == 0x2028) {
            if (c == '\r' && i + 1 < text.size() && text.at(i + 1) == u'\n')
                ++i;
            out.push_back(AddWord(wLine, 0, false));
        } else if (c == '\t') {
            out.push_back(AddWord(wTab, 0, false));
        } else if (c >= 0x7F) {
            out.push_back(AddWord(wU, c > 0x7FFF ? int(c) - 65536 : int(c), true));
            static const char hex[] = "0123456789abcdef";
            const uchar byte = m_codeTable->bytes.value(c, 0);
            const char fallback[] = {'\\', '\'', hex[byte >> 4], hex[byte & 15]};
            out.push_back(byte ? AddToken(Fallback, QByteArrayView(fallback, 4)) : AddToken(Fallback, "?"));
        } // other control characters are dropped
    }
    flush();
    if (group)
        out.push_back(AddToken(Close, "}"));
    return out;
}

void RtfDocument::InsertTokens(int at, const std::vector<Token> &tokens)
{
    if (tokens.empty())
        return;
    m_tokens.insert(m_tokens.begin() + at, tokens.begin(), tokens.end());
    const int k = int(tokens.size());
    // Rows lie in the order of the tokens: from the last one back to the first that ends before the place.
    if (m_tables)
        for (auto table = m_tables->rbegin(); table != m_tables->rend(); ++table)
            for (auto row = table->rows.rbegin(); row != table->rows.rend(); ++row) {
                if (row->end <= at) {
                    Edited();
                    return;
                }
                if (row->begin > at)
                    row->begin += k;
                row->end += k;
                for (int &cell : row->cells)
                    if (cell >= at)
                        cell += k;
            }
    Edited();
}

int RtfDocument::MatchingClose(int open) const
{
    int level = 0;
    for (int i = open; i < int(m_tokens.size()); ++i) {
        if (m_tokens[i].kind == Open)
            ++level;
        else if (m_tokens[i].kind == Close && --level == 0)
            return i;
    }
    return int(m_tokens.size()) - 1;
}

bool RtfDocument::IsBookmark(int open) const
{
    int i = open + 1;
    auto next = [&] {
        while (i < int(m_tokens.size()) && (m_tokens[i].kind == Space || m_tokens[i].kind == Removed))
            ++i;
        return i < int(m_tokens.size()) ? &m_tokens[i++] : nullptr;
    };
    const Token *star = next();
    const Token *word = next();
    return star && word && star->kind == Symbol && star->param == '*' && word->kind == Word
           && (word->id == wBkmkstart || word->id == wBkmkend);
}

void RtfDocument::AddRow(int table)
{
    const Row last = RowAt(table, RowCount(table));
    std::vector<Token> copy;
    std::vector<int> cells;
    copy.reserve(size_t(last.end - last.begin));
    Walker w(*this);
    size_t column = 0;
    bool anchored = false; // the copied cell has a place for its text
    for (int i = last.begin; i < last.end; ++i) {
        const Token &t = m_tokens[i];
        if (t.kind == Removed)
            continue;
        if (t.kind == Open && IsOwnGroup(i) && column < last.cells.size()) { // the text is not copied
            if (!anchored)
                copy.push_back(Token{t.offset, 0, 0, 0, Chars, false});
            anchored = true;
            i = MatchingClose(i);
            continue;
        }
        if (t.kind == Open && IsBookmark(i)) { // a bookmark names one place only
            i = MatchingClose(i);
            continue;
        }
        w.Step(t);
        if (column < last.cells.size() && i == last.cells[column]) {
            cells.push_back(last.end + int(copy.size()));
            copy.push_back(t);
            ++column;
            anchored = false;
        } else if (w.state.dest != Skip && IsTextual(t)) {
            if (!anchored && column < last.cells.size()) {
                copy.push_back(Token{t.offset, 0, 0, 0, Chars, false});
                anchored = true;
            }
        } else if (t.kind == Word && (t.id == wIrow || t.id == wIrowband) && t.hasParam) {
            copy.push_back(AddWord(t.id, t.param + 1, true));
        } else {
            copy.push_back(t);
        }
    }
    for (int i = last.begin; i < last.end; ++i)
        if (m_tokens[i].kind == Word && m_tokens[i].id == wLastrow)
            m_tokens[i].kind = Removed;
    InsertTokens(last.end, copy);
    (*m_tables)[table - 1].rows.push_back(Row{last.end, last.end + int(copy.size()), std::move(cells)});
}

void RtfDocument::SetCellText(int table, int row, int column, const QString &text, int halfPoints)
{
    const Row &r = RowAt(table, row);
    if (column < 1 || column > int(r.cells.size()))
        throw EWordProcessorError(QStringLiteral("В строке %1 таблицы %2 нет столбца номер %3 (столбцов в ней: %4)")
                                      .arg(row).arg(table).arg(column).arg(r.cells.size()));
    const int first = CellStart(r, column), last = r.cells[column - 1];
    int at = -1;
    Walker w(*this);
    for (int i = r.begin; i < last; ++i) {
        Token &t = m_tokens[i];
        if (i >= first && IsOwnGroup(i) && w.state.dest != Skip) { // the text written before, with its group
            if (at < 0)
                at = i;
            for (const int close = MatchingClose(i); i <= close; ++i)
                m_tokens[i].kind = Removed;
            --i;
            continue;
        }
        w.Step(t);
        if (i < first || w.state.dest == Skip || !IsTextual(t))
            continue;
        if (at < 0)
            at = i;
        t.kind = Removed;
    }
    InsertTokens(at < 0 ? last : at, Encode(text, halfPoints));
    Edited();
}

int RtfDocument::ReplaceAll(const QString &find, const QString &replacement, Qt::CaseSensitivity cs,
                            bool wholeWord, int halfPoints)
{
    if (find.isEmpty())
        return 0;
    const Stream &s = VisibleStream();
    const QString &hay = s.chars;
    auto wordChar = [&](qsizetype at) {
        return at >= 0 && at < hay.size() && (hay.at(at).isLetterOrNumber() || hay.at(at) == u'_');
    };
    std::vector<qsizetype> matches;
    for (qsizetype from = 0, at; (at = hay.indexOf(find, from, cs)) >= 0;) {
        const qsizetype end = at + find.size();
        bool fits = !wholeWord || (!wordChar(at - 1) && !wordChar(end));
        for (qsizetype k = at; fits && k < end; ++k)
            fits = hay.at(k) != QChar(kStoryEdge) && hay.at(k) != QChar(kCellEnd);
        if (!fits) {
            from = at + 1;
            continue;
        }
        matches.push_back(at);
        from = end;
    }
    if (matches.empty())
        return 0;

    // 0 keeps a character, 1 drops it, 2 drops it and puts the replacement in its place.
    std::vector<quint8> action(size_t(hay.size()), 0);
    for (qsizetype at : matches) {
        action[size_t(at)] = 2;
        std::fill(action.begin() + at + 1, action.begin() + at + find.size(), quint8(1));
    }
    const std::vector<Token> value = Encode(replacement, halfPoints);

    std::vector<Token> &out = m_spare;
    out.clear();
    out.reserve(m_tokens.size() + matches.size() * (value.size() + 2));
    const size_t chars = s.refs.size();
    size_t c = 0;
    bool dropFallback = false; // the bytes that stood in for a dropped \u character
    for (quint32 i = 0; i < m_tokens.size(); ++i) {
        const Token &t = m_tokens[i];
        if (t.kind == Removed)
            continue;
        if (c >= chars || s.refs[c].first != i) {
            if (dropFallback && t.kind == Fallback)
                continue;
            dropFallback = dropFallback && t.kind == Space;
            out.push_back(t);
            continue;
        }
        dropFallback = false;
        if (t.kind == Chars) {
            quint32 kept = 0; // the first byte of the run still to be written
            for (; c < chars && s.refs[c].first == i; ++c) {
                if (action[c] == 0)
                    continue;
                const quint32 b = s.refs[c].second;
                if (b > kept)
                    out.push_back(Token{t.offset + kept, b - kept, 0, 0, Chars, false});
                if (action[c] == 2)
                    out.insert(out.end(), value.begin(), value.end());
                kept = b + 1;
            }
            if (kept < t.length)
                out.push_back(Token{t.offset + kept, t.length - kept, 0, 0, Chars, false});
            continue;
        }
        const quint8 a = action[c];
        while (c < chars && s.refs[c].first == i)
            ++c;
        if (a == 2)
            out.insert(out.end(), value.begin(), value.end());
        if (a == 0)
            out.push_back(t);
        else
            dropFallback = t.kind == Word && t.id == wU;
    }
    m_tokens.swap(out);
    m_tables.reset();
    Edited();
    return int(matches.size());
}

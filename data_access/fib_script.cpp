#include "fib_script.h"
#include "fib_encoding.h"
#include "fib_library.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLibrary>
#include <QRegularExpression>
#include <QStringDecoder>


namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char(' ');
}

// What may follow a word or a terminator for it to count: so "COMMIT;ROLLBACK" has no terminator.
bool isWordEnd(QChar c)
{
    return isBlank(c) || c == QLatin1Char(',') || c == QLatin1Char('-') || c == QLatin1Char('/')
        || c == QLatin1Char(';') || c == QLatin1Char('^') || c == QLatin1Char('}');
}

// `word` stands at `col`: its capitals also match small letters of the text.
bool matchesAt(const QString &line, int col, QStringView word)
{
    if (word.isEmpty() || col + word.size() > line.size())
        return false;
    for (int i = 0; i < word.size(); ++i) {
        const QChar w = word[i];
        const QChar t = line[col + i];
        if (t != w && !(w.isUpper() && t == w.toLower()))
            return false;
    }
    const int next = col + int(word.size());
    return next >= line.size() || isWordEnd(line[next]);
}

bool charAt(const QString &s, int i, char c)
{
    return i < s.size() && s[i] == QLatin1Char(c);
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

bool isQuote(QChar c)
{
    return c == QLatin1Char('\'') || c == QLatin1Char('"');
}

// Skips blanks and both kinds of comment from `pos`.
void skipBlanksAndComments(const QString &s, int &pos)
{
    const int n = int(s.size());
    while (pos < n) {
        if (isBlank(s[pos])) {
            ++pos;
        } else if (charAt(s, pos, '-') && charAt(s, pos + 1, '-')) {
            const int eol = int(s.indexOf(QLatin1Char('\n'), pos));
            pos = eol < 0 ? n : eol + 1;
        } else if (charAt(s, pos, '/') && charAt(s, pos + 1, '*')) {
            const int end = int(s.indexOf(QLatin1String("*/"), pos + 2));
            pos = end < 0 ? n : end + 2;
        } else {
            break;
        }
    }
}

// End of the quoted string opening at `pos`; a doubled quote closes and opens again.
int quotedEnd(const QString &s, int pos)
{
    const int close = int(s.indexOf(s[pos], pos + 1));
    return close < 0 ? int(s.size()) : close + 1;
}

struct Token
{
    QString text;
    int begin = 0;
    int end = 0;
    bool quoted = false;
    QString upper() const { return text.toUpper(); }
};

// The next token after blanks and comments: a quoted string, or a run of characters that `inRun` accepts
// (at least one character).
template <typename InRun>
bool nextToken(const QString &s, int &pos, Token &t, InRun inRun)
{
    skipBlanksAndComments(s, pos);
    if (pos >= s.size())
        return false;
    t.begin = pos;
    t.quoted = isQuote(s[pos]);
    if (t.quoted) {
        pos = quotedEnd(s, pos);
    } else {
        do
            ++pos;
        while (pos < s.size() && inRun(s[t.begin], s[pos]));
    }
    t.end = pos;
    t.text = s.mid(t.begin, t.end - t.begin);
    return true;
}

// SQL words: a name, a quoted string, or one other character.
bool nextWord(const QString &s, int &pos, Token &t)
{
    return nextToken(s, pos, t, [](QChar first, QChar c) { return isWordChar(first) && isWordChar(c); });
}

// Clause words of runner statements: separated by blanks only, so a file path stays whole.
bool nextClause(const QString &s, int &pos, Token &t)
{
    return nextToken(s, pos, t, [](QChar, QChar c) { return !isBlank(c) && !isQuote(c); });
}

QStringList clauses(const QString &s, QVector<Token> *tokens = nullptr)
{
    QStringList out;
    int pos = 0;
    Token t;
    while (nextClause(s, pos, t)) {
        out << t.text;
        if (tokens)
            tokens->append(t);
    }
    return out;
}

QString unquote(const QString &word)
{
    if (word.size() >= 2 && isQuote(word[0]) && word.back() == word[0]) {
        const QString quote(word[0]);
        return word.mid(1, word.size() - 2).replace(quote + quote, quote);
    }
    return word;
}

QString sqlLiteral(const QString &value)
{
    return QLatin1Char('\'') + QString(value).replace(QLatin1String("'"), QLatin1String("''")) + QLatin1Char('\'');
}

// Body tokens. Parentheses, commas and operators separate too, so "(CASE ... END)" balances.
bool isBodySeparator(QChar c)
{
    static const QString extra = QStringLiteral("-/;(),=+*<>|");
    return isBlank(c) || extra.contains(c);
}

bool nextBodyToken(const QString &s, int &pos, Token &t)
{
    const int n = int(s.size());
    for (;;) {
        skipBlanksAndComments(s, pos);
        if (pos >= n)
            return false;
        if (isBodySeparator(s[pos]) && !(charAt(s, pos, '-') && charAt(s, pos + 1, '-'))
            && !(charAt(s, pos, '/') && charAt(s, pos + 1, '*'))) {
            ++pos;
            continue;
        }
        break;
    }
    t.begin = pos;
    t.quoted = isQuote(s[pos]);
    if (t.quoted) {
        pos = quotedEnd(s, pos);
    } else {
        while (pos < n && !isBodySeparator(s[pos]) && !isQuote(s[pos]))
            ++pos;
    }
    t.end = pos;
    t.text = s.mid(t.begin, t.end - t.begin);
    return true;
}

// Objects whose text holds a body with its own ";".
bool hasBody(int objectKind)
{
    return objectKind == sokProcedure || objectKind == sokTrigger || objectKind == sokBlock
        || objectKind == sokPackage || objectKind == sokPackageBody || objectKind == sokFunction;
}

int objectKindOf(const QString &word)
{
    static const QHash<QString, int> kinds{
        {"DATABASE", sokDatabase}, {"SCHEMA", sokDatabase},    {"DOMAIN", sokDomain},       {"TABLE", sokTable},
        {"VIEW", sokView},         {"PROCEDURE", sokProcedure}, {"TRIGGER", sokTrigger},    {"FUNCTION", sokFunction},
        {"EXCEPTION", sokException}, {"GENERATOR", sokGenerator}, {"SEQUENCE", sokGenerator}, {"INDEX", sokIndex},
        {"CONSTRAINT", sokConstraint}, {"FILTER", sokFilter},   {"COLUMN", sokColumn},       {"PARAMETER", sokParameter},
        {"ROLE", sokRole},         {"BLOCK", sokBlock},         {"USER", sokUser},           {"PACKAGE", sokPackage},
    };
    return kinds.value(word, sokNone);
}

// Words that may stand between the command and the object word.
bool isObjectModifier(const QString &word)
{
    static const QStringList words{"OR", "ALTER", "UNIQUE", "ASC", "ASCENDING", "DESC", "DESCENDING",
                                   "GLOBAL", "TEMPORARY", "EXTERNAL"};
    return words.contains(word);
}

// Object kind and name from the words after the command.
void findObject(const QString &s, int pos, TFIBScriptStatement &st)
{
    Token t;
    bool external = false;
    while (nextWord(s, pos, t)) {
        const QString w = t.upper();
        if (isObjectModifier(w)) {
            external = external || w == QLatin1String("EXTERNAL");
            continue;
        }
        st.ObjectKind = objectKindOf(w);
        if (st.ObjectKind == sokNone)
            return;
        if (st.ObjectKind == sokFunction && external)
            st.ObjectKind = sokExternalFunction;
        if (st.ObjectKind == sokBlock)
            return;
        Token name;
        int at = pos;
        if (!nextWord(s, at, name))
            return;
        if (st.ObjectKind == sokPackage && name.upper() == QLatin1String("BODY")) {
            st.ObjectKind = sokPackageBody;
            if (!nextWord(s, at, name))
                return;
        }
        if (name.quoted || isWordChar(name.text[0]))
            st.ObjectName = name.text;
        return;
    }
}

// Kind, object kind and object name of a statement text that began as `startKind`.
void classify(const QString &s, int startKind, TFIBScriptStatement &st)
{
    st.Kind = startKind;
    st.ObjectKind = sokNone;
    st.ObjectName.clear();
    if (startKind == skEmpty || startKind == skDirective)
        return;

    int pos = 0;
    Token first;
    if (!nextWord(s, pos, first)) {
        st.Kind = skSQL;
        return;
    }
    const QString w = first.upper();
    auto secondWord = [&] {
        int at = pos;
        Token t;
        return nextWord(s, at, t) ? t.upper() : QString();
    };

    static const QHash<QString, int> byFirstWord{
        {"DELETE", skDML},        {"UPDATE", skDML},       {"MERGE", skDML},        {"CONNECT", skConnect},
        {"DISCONNECT", skDisconnect}, {"RECONNECT", skReconnect}, {"COMMIT", skCommit}, {"ROLLBACK", skRollback},
        {"CREATE", skCreate},     {"ALTER", skAlter},      {"RECREATE", skRecreate}, {"DROP", skDrop},
        {"SET", skSet},           {"DESCRIBE", skDescribe}, {"DECLARE", skDeclare}, {"COMMENT", skComment},
        {"GRANT", skGrant},       {"REVOKE", skGrant},     {"INPUT", skInput},      {"BATCH", skBatch},
        {"EXECUTE", skExecute},   {"INSERT", skInsert},    {"REINSERT", skReinsert},
    };
    st.Kind = byFirstWord.value(w, skSQL);

    switch (st.Kind) {
    case skCreate:
    case skAlter:
    case skRecreate:
    case skDrop:
    case skDeclare:
        findObject(s, pos, st);
        if (st.ObjectKind == sokDatabase && st.Kind == skCreate)
            st.Kind = skCreateDatabase;
        else if (st.ObjectKind == sokDatabase && st.Kind == skDrop)
            st.Kind = skDropDatabase;
        break;
    case skExecute:
        if (secondWord() == QLatin1String("BLOCK")) {
            st.Kind = skDML;
            st.ObjectKind = sokBlock;
        }
        break;
    case skSet: {
        const QString second = secondWord();
        if (second == QLatin1String("GENERATOR")) {
            st.Kind = skSetGenerator;
            findObject(s, pos, st);
        } else if (second == QLatin1String("STATISTICS")) {
            st.Kind = skSetStatistics;
            Token skip;
            nextWord(s, pos, skip);
            findObject(s, pos, st);
        }
        break;
    }
    case skBatch: {
        const QString second = secondWord();
        if (second == QLatin1String("START"))
            st.Kind = skBatchStart;
        else if (second == QLatin1String("EXECUTE"))
            st.Kind = skBatchExecute;
        break;
    }
    default:
        break;
    }
}

// Nothing but blanks, comments and brace comments.
bool isEmptySql(const QString &s)
{
    int pos = 0;
    for (;;) {
        skipBlanksAndComments(s, pos);
        if (pos < s.size() && s[pos] == QLatin1Char('{')) {
            const int close = int(s.indexOf(QLatin1Char('}'), pos));
            pos = close < 0 ? int(s.size()) : close + 1;
            continue;
        }
        return pos >= s.size();
    }
}

[[noreturn]] void cantResolve(const QString &directive, int line)
{
    throw EFIBScriptError(QStringLiteral("Parse script error.\r\nCan't resolve directive  \"%1\"\r\nLine %2")
                              .arg(directive)
                              .arg(line),
                          line);
}

// The word of a directive's inner text "$WORD arg" and its argument.
void splitDirective(const QString &inner, QString &word, QString &argument)
{
    int pos = 1; // past "$"
    while (pos < inner.size() && (inner[pos].isLetter() || inner[pos] == QLatin1Char('_')))
        ++pos;
    word = inner.mid(1, pos - 1).toUpper();
    argument = inner.mid(pos).trimmed().section(QRegularExpression(QStringLiteral("\\s+")), 0, 0);
}

} // namespace

// ---------------------------------------------------------------------------------------------

// One pass over the lines of a script, filling the parser's statement table.
class TScriptScanner
{
public:
    TScriptScanner(TpFIBScriptParser &parser, const QStringList &lines, const QString &terminator,
                   const QStringList &defines)
        : m_parser(parser), m_lines(lines), m_term(terminator), m_defines(defines)
    {
    }

    void Run();

private:
    enum class State { Between, Statement, Brace };
    enum class Lex { Plain, Block, Single, Double, Skip };
    enum class Watch { Off, Armed, Collecting };
    struct Pos
    {
        int line = 0;
        int col = 0;
    };
    struct Conditional
    {
        bool condition = false;
        bool inElse = false;
    };
    // Survives from one ";" to the next while a body is open.
    struct BodyScan
    {
        bool asNoted = false;
        bool seenBegin = false;
        int depth = 0;
        int reached = 0; // offset in the statement's text
    };

    void StepBetween(const QString &s);
    void StepStatement(const QString &s);
    void StepBrace(const QString &s);
    void AtTerminator();
    bool BodyComplete(const QString &text);
    void Directive();
    void SkippedDirective(int at);
    bool ReadDirective(Pos from, Pos &after, QString &inner);
    void AddStatement(Pos start, Pos end, const TFIBScriptStatement &classified);
    void Finish();
    QString Text(Pos start, Pos end) const
    {
        return TpFIBScriptParser::TextBetween(m_lines, start.line, start.col, end.line, end.col);
    }

    TpFIBScriptParser &m_parser;
    const QStringList &m_lines;
    QString m_term;
    QStringList m_defines;

    int m_line = 0;
    int m_col = 0;
    State m_state = State::Between;
    Lex m_lex = Lex::Plain;
    Watch m_watch = Watch::Off;
    QString m_newTerm;
    Pos m_start;
    int m_startKind = skSQL;
    BodyScan m_body;
    QVector<Conditional> m_conditionals;
    int m_skipNesting = 0;
};

void TScriptScanner::Run()
{
    const int n = int(m_lines.size());
    while (m_line < n) {
        const QString &s = m_lines[m_line];
        if (m_col >= s.size()) {
            ++m_line;
            m_col = 0;
            continue;
        }
        switch (m_lex) {
        case Lex::Block: {
            const int end = int(s.indexOf(QLatin1String("*/"), m_col));
            if (end < 0) {
                m_col = int(s.size());
            } else {
                m_col = end + 2;
                m_lex = Lex::Plain;
            }
            continue;
        }
        case Lex::Single:
        case Lex::Double: {
            const int end = int(s.indexOf(QLatin1Char(m_lex == Lex::Single ? '\'' : '"'), m_col));
            if (end < 0) {
                m_col = int(s.size());
            } else {
                m_col = end + 1;
                m_lex = Lex::Plain;
            }
            continue;
        }
        case Lex::Skip: {
            const int at = int(s.indexOf(QLatin1String("{$"), m_col));
            if (at < 0)
                m_col = int(s.size());
            else
                SkippedDirective(at);
            continue;
        }
        case Lex::Plain:
            break;
        }
        switch (m_state) {
        case State::Between: StepBetween(s); break;
        case State::Statement: StepStatement(s); break;
        case State::Brace: StepBrace(s); break;
        }
    }
    Finish();
}

void TScriptScanner::StepBetween(const QString &s)
{
    const QChar c = s[m_col];
    if (isBlank(c)) {
        ++m_col;
        return;
    }
    if (c == QLatin1Char('/') && charAt(s, m_col + 1, '*')) {
        m_lex = Lex::Block;
        m_col += 2;
        return;
    }
    if (c == QLatin1Char('-') && charAt(s, m_col + 1, '-')) {
        m_col = int(s.size());
        return;
    }
    if (matchesAt(s, m_col, m_term)) { // a lone terminator: no statement
        m_col += int(m_term.size());
        return;
    }
    if (c == QLatin1Char('{')) {
        if (charAt(s, m_col + 1, '$')) {
            Directive();
        } else {
            m_start = {m_line, m_col};
            m_startKind = skEmpty;
            m_state = State::Brace;
            ++m_col;
        }
        return;
    }
    m_start = {m_line, m_col};
    m_state = State::Statement;
    m_body = {};
    if (matchesAt(s, m_col, u"SET")) {
        m_startKind = skSet;
        m_watch = Watch::Armed;
        m_col += 3;
        return;
    }
    m_startKind = (c == QLatin1Char('-') || c == QLatin1Char('/')) ? skEmpty : skSQL;
    // The character itself is read by the statement rules: it may open a string.
}

void TScriptScanner::StepBrace(const QString &s)
{
    const int close = int(s.indexOf(QLatin1Char('}'), m_col));
    if (close < 0) {
        m_col = int(s.size());
        return;
    }
    TFIBScriptStatement st;
    st.Kind = skEmpty;
    AddStatement(m_start, {m_line, close + 1}, st);
    m_state = State::Between;
    m_col = close + 1;
}

void TScriptScanner::StepStatement(const QString &s)
{
    const QChar c = s[m_col];
    if (m_watch == Watch::Collecting) {
        if (matchesAt(s, m_col, m_term)) {
            // The SET TERM statement itself is dropped from the table.
            m_col += int(m_term.size());
            if (!m_newTerm.isEmpty())
                m_term = m_newTerm;
            m_newTerm.clear();
            m_watch = Watch::Off;
            m_state = State::Between;
            return;
        }
        if (!isBlank(c))
            m_newTerm += c;
        ++m_col;
        return;
    }
    if (m_watch == Watch::Armed) {
        if (isBlank(c)) {
            ++m_col;
            return;
        }
        if (matchesAt(s, m_col, u"TERM")) {
            m_watch = Watch::Collecting;
            m_newTerm.clear();
            m_col += 4;
            return;
        }
        m_watch = Watch::Off;
    }
    if (c == QLatin1Char('/') && charAt(s, m_col + 1, '*')) {
        m_lex = Lex::Block;
        m_col += 2;
    } else if (c == QLatin1Char('-') && charAt(s, m_col + 1, '-')) {
        m_col = int(s.size());
    } else if (c == QLatin1Char('"')) {
        m_lex = Lex::Double;
        ++m_col;
    } else if (c == QLatin1Char('\'')) {
        m_lex = Lex::Single;
        ++m_col;
    } else if (c == QLatin1Char('{')) {
        throw EFIBScriptError(QStringLiteral("Parse script error.\r\n Unexpected symbol \"{\"\r\nLine :%1 Pos:%2")
                                  .arg(m_line + 1)
                                  .arg(m_col + 1),
                              m_line + 1, m_col + 1);
    } else if (matchesAt(s, m_col, m_term)) {
        AtTerminator();
    } else {
        ++m_col;
    }
}

void TScriptScanner::AtTerminator()
{
    const Pos end{m_line, m_col};
    const QString text = Text(m_start, end);
    TFIBScriptStatement st;
    classify(text, m_startKind, st);
    m_col += int(m_term.size());

    bool complete = true;
    if (m_term == QLatin1String(";") && st.Kind != skDrop && hasBody(st.ObjectKind))
        complete = BodyComplete(text);
    if (!complete)
        return; // the body goes on past this ";"
    AddStatement(m_start, end, st);
    m_body = {};
    m_state = State::Between;
}

bool TScriptScanner::BodyComplete(const QString &text)
{
    int pos = m_body.reached;
    Token t;
    while (nextBodyToken(text, pos, t)) {
        const QString w = t.upper();
        if (!m_body.seenBegin) {
            if (w == QLatin1String("AS")) {
                m_body.asNoted = true;
            } else if (w == QLatin1String("BEGIN")) {
                m_body.seenBegin = true;
                m_body.depth = 1;
            }
        } else if (w == QLatin1String("BEGIN") || w == QLatin1String("CASE")) {
            ++m_body.depth;
        } else if (w == QLatin1String("END") && --m_body.depth == 0) {
            m_body = {};
            return true;
        }
    }
    m_body.reached = int(text.size());
    // Before BEGIN, an "AS" means local declarations stand here and the body is still to come.
    if (!m_body.seenBegin && !m_body.asNoted) {
        m_body = {};
        return true;
    }
    return false;
}

bool TScriptScanner::ReadDirective(Pos from, Pos &after, QString &inner)
{
    for (int line = from.line; line < m_lines.size(); ++line) {
        const QString &s = m_lines[line];
        const int searchFrom = line == from.line ? from.col + 1 : 0;
        const int close = int(s.indexOf(QLatin1Char('}'), searchFrom));
        if (close >= 0) {
            after = {line, close + 1};
            inner = Text({from.line, from.col + 1}, {line, close});
            return true;
        }
    }
    after = {int(m_lines.size()), 0};
    inner = Text({from.line, from.col + 1}, {int(m_lines.size()) - 1, int(m_lines.back().size())});
    return false;
}

void TScriptScanner::Directive()
{
    const Pos start{m_line, m_col};
    Pos after;
    QString inner;
    if (!ReadDirective(start, after, inner))
        cantResolve(inner.trimmed(), start.line + 1);
    QString word, argument;
    splitDirective(inner, word, argument);

    if (word == QLatin1String("IFDEF") || word == QLatin1String("IFNDEF")) {
        if (argument.isEmpty())
            cantResolve(inner.trimmed(), start.line + 1);
        const bool defined = m_defines.contains(argument, Qt::CaseInsensitive);
        const bool condition = word == QLatin1String("IFDEF") ? defined : !defined;
        m_conditionals.append({condition, false});
        if (!condition) {
            m_lex = Lex::Skip;
            m_skipNesting = 0;
        }
    } else if (word == QLatin1String("ELSE")) {
        if (m_conditionals.isEmpty() || m_conditionals.back().inElse)
            cantResolve(inner.trimmed(), start.line + 1);
        m_conditionals.back().inElse = true;
        m_lex = Lex::Skip; // the branch taken so far was the true one
        m_skipNesting = 0;
    } else if (word == QLatin1String("ENDIF")) {
        if (m_conditionals.isEmpty())
            cantResolve(inner.trimmed(), start.line + 1);
        m_conditionals.removeLast();
    } else if (word.startsWith(QLatin1String("IF")) || word == QLatin1String("ELSEIF")) {
        cantResolve(inner.trimmed(), start.line + 1); // conditions other than a defined name
    } else {
        if (word == QLatin1String("DEFINE") && !argument.isEmpty())
            m_defines.append(argument);
        else if (word == QLatin1String("UNDEF"))
            m_defines.removeAll(argument);
        TFIBScriptStatement st;
        st.Kind = skDirective;
        AddStatement(start, after, st);
    }
    m_line = after.line;
    m_col = after.col;
}

void TScriptScanner::SkippedDirective(int at)
{
    const Pos start{m_line, at};
    Pos after;
    QString inner;
    if (!ReadDirective(start, after, inner)) {
        m_line = after.line;
        m_col = after.col;
        return;
    }
    QString word, argument;
    splitDirective(inner, word, argument);
    if (word.startsWith(QLatin1String("IF"))) {
        ++m_skipNesting;
    } else if (word == QLatin1String("ELSE") && m_skipNesting == 0) {
        Conditional &top = m_conditionals.back();
        if (top.inElse)
            cantResolve(inner.trimmed(), start.line + 1);
        top.inElse = true;
        if (!top.condition)
            m_lex = Lex::Plain;
    } else if (word == QLatin1String("ENDIF")) {
        if (m_skipNesting > 0) {
            --m_skipNesting;
        } else {
            m_conditionals.removeLast();
            m_lex = Lex::Plain;
        }
    }
    m_line = after.line;
    m_col = after.col;
}

void TScriptScanner::AddStatement(Pos start, Pos end, const TFIBScriptStatement &classified)
{
    if (start.line == end.line && start.col == end.col)
        return;
    if (end.col == 0 && end.line > start.line) // the terminator stood in the first column
        end = {end.line - 1, int(m_lines[end.line - 1].size())};
    TFIBScriptStatement st = classified;
    st.StartLine = start.line;
    st.StartPos = start.col;
    st.EndLine = end.line;
    st.EndPos = end.col;
    m_parser.Add(st);
}

void TScriptScanner::Finish()
{
    const int open = int(m_conditionals.size()) + m_skipNesting;
    if (open > 0)
        throw EFIBScriptError(QStringLiteral("Parse script error.\r\n$ENDIF skipped %1 times").arg(open));
    if (m_lines.isEmpty())
        return;
    const Pos end{int(m_lines.size()) - 1, int(m_lines.back().size())};
    if (m_state == State::Statement) {
        if (m_watch == Watch::Collecting)
            return; // a SET TERM never becomes a statement
        TFIBScriptStatement st;
        classify(Text(m_start, end), m_startKind, st);
        AddStatement(m_start, end, st);
    } else if (m_state == State::Brace) {
        TFIBScriptStatement st;
        st.Kind = skEmpty;
        AddStatement(m_start, end, st);
    }
}

// ---------------------------------------------------------------------------------------------

QString TpFIBScriptParser::TextBetween(const QStringList &lines, int startLine, int startPos, int endLine,
                                       int endPos)
{
    if (startLine == endLine)
        return lines[startLine].mid(startPos, endPos - startPos);
    QString text = lines[startLine].mid(startPos);
    for (int line = startLine + 1; line < endLine; ++line)
        text += QLatin1Char('\n') + lines[line];
    if (endLine < lines.size())
        text += QLatin1Char('\n') + lines[endLine].left(endPos);
    return text;
}

QString TpFIBScriptParser::StatementText(int index) const
{
    const TFIBScriptStatement &st = m_items.at(index);
    return TextBetween(m_lines, st.StartLine, st.StartPos, st.EndLine, st.EndPos);
}

void TpFIBScriptParser::Add(const TFIBScriptStatement &statement)
{
    if (m_count == m_items.size()) {
        const int size = int(m_items.size());
        const int step = size < 9 ? 4 : size < 65 ? 16 : size / 4;
        m_items.resize(size + step);
    }
    m_items[m_count++] = statement;
}

void TpFIBScriptParser::ParseScript(const QStringList &lines, const QString &terminator,
                                    const QStringList &defines)
{
    m_lines = lines;
    m_count = 0;
    m_items.clear();
    m_items.resize(qMax(int(lines.size()) / 16, 3));
    try {
        TScriptScanner(*this, m_lines, terminator, defines).Run();
    } catch (...) {
        m_items.clear();
        m_count = 0;
        throw;
    }
    m_items.resize(m_count);
    m_items.squeeze();
}

// ---------------------------------------------------------------------------------------------

TpFIBScripter::TpFIBScripter(QObject *owner) : QObject(owner) {}

TpFIBScripter::~TpFIBScripter()
{
    m_query.reset();
    m_ownTransaction.reset();
}

void TpFIBScripter::SetScript(const QStringList &lines)
{
    m_script = lines;
    m_parsed = false;
}

void TpFIBScripter::SetScriptText(const QString &text)
{
    QString normal = text;
    normal.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = normal.split(QLatin1Char('\n'));
    if (normal.endsWith(QLatin1Char('\n')))
        lines.removeLast();
    SetScript(lines);
}

void TpFIBScripter::LoadScriptFromFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EFIBScriptError(QStringLiteral("Cannot open file \"%1\": %2").arg(fileName, file.errorString()));
    const QByteArray bytes = file.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8(bytes);
    if (utf8.hasError())
        text = AnsiDecode(bytes);
    SetScriptText(text);
    m_fileName = QFileInfo(fileName).absoluteFilePath();
}

void TpFIBScripter::SetDatabase(TFIBDatabase *database)
{
    m_database = database;
    if (m_ownTransaction && !m_ownTransaction->Active())
        m_ownTransaction->SetDefaultDatabase(database);
}

TFIBTransaction *TpFIBScripter::Transaction()
{
    if (m_transaction)
        return m_transaction;
    if (!m_ownTransaction) {
        m_ownTransaction = std::make_unique<TpFIBTransaction>();
        m_ownTransaction->setObjectName(objectName() + QStringLiteral("Transaction"));
    }
    if (m_ownTransaction->DefaultDatabase() != m_database && !m_ownTransaction->Active())
        m_ownTransaction->SetDefaultDatabase(m_database);
    return m_ownTransaction.get();
}

void TpFIBScripter::Parse()
{
    m_parser.ParseScript(m_script, QStringLiteral(";"), Defines);
    m_parsed = true;
}

void TpFIBScripter::ExecuteScript(int first)
{
    if (!m_parsed)
        Parse();
    m_sqlDialect = 3;
    m_charSet.clear();
    m_runDefines = Defines;
    Run(first);
}

void TpFIBScripter::Run(int first)
{
    const int count = m_parser.Count();
    if (count == 0 && first == 1)
        return; // an empty script has nothing to run
    if (first < 1 || first > count)
        throw EFIBScriptError(QStringLiteral("Statement №%1 don't exist").arg(first));

    // The query belongs to the connection only while a run lasts.
    struct Detach
    {
        TpFIBQuery *query;
        ~Detach()
        {
            if (!query)
                return;
            try {
                query->SetTransaction(nullptr);
                query->SetDatabase(nullptr);
            } catch (const std::exception &) {
            }
        }
    };
    if (!m_query) {
        m_query = std::make_unique<TpFIBQuery>();
        m_query->setObjectName(objectName());
    }
    Detach detach{m_query.get()};

    for (int i = first - 1; i < count; ++i) {
        const TFIBScriptStatement st = m_parser.Statement(i);
        const QString text = m_parser.StatementText(i);
        m_current = i + 1;
        try {
            ExecuteStatement(st, text);
        } catch (const EFIBError &error) {
            if (!OnExecuteError)
                throw;
            bool rollback = true;
            bool stop = true;
            OnExecuteError(this, i + 1, st.StartLine + 1, text, error, rollback, stop);
            TFIBTransaction *tr = Transaction();
            if (rollback && tr->Active())
                tr->Rollback();
            if (stop)
                return;
        }
    }
}

TFIBDatabase &TpFIBScripter::RequireDatabase()
{
    if (!m_database)
        throw EFIBScriptError(QStringLiteral("%1: Database not assigned.").arg(objectName()));
    return *m_database;
}

void TpFIBScripter::ExecuteStatement(const TFIBScriptStatement &st, const QString &text)
{
    switch (st.Kind) {
    case skEmpty:
        if (!isEmptySql(text))
            RunSQL(text, st.Kind);
        break;
    case skInsert:
        m_lastInsert = text;
        RunSQL(text, st.Kind);
        break;
    case skReinsert:
        if (m_lastInsert.isEmpty())
            throw EFIBScriptError(QStringLiteral("REINSERT: no INSERT statement ran before it."));
        RunSQL(m_lastInsert, skInsert);
        break;
    case skConnect: DoConnect(text); break;
    case skDisconnect: RequireDatabase().Close(); break;
    case skReconnect: {
        TFIBDatabase &db = RequireDatabase();
        db.Close();
        db.Open();
        break;
    }
    case skCreateDatabase: DoCreateDatabase(text); break;
    case skDropDatabase: DoDropDatabase(); break;
    case skCommit: DoCommit(text); break;
    case skRollback: DoRollback(text); break;
    case skSet: DoSet(text); break;
    case skDescribe: DoDescribe(text); break;
    case skInput: DoInput(text); break;
    case skBatch:
    case skBatchStart:
    case skBatchExecute:
        throw EFIBScriptError(QStringLiteral("Batch execute support for IB2007 only"));
    case skDirective: DoDirective(st, text); break;
    default: RunSQL(text, st.Kind); break;
    }
}

void TpFIBScripter::RunSQL(const QString &text, int kind)
{
    TFIBDatabase &db = RequireDatabase();
    TFIBTransaction *tr = Transaction();
    m_query->SetDatabase(&db);
    m_query->SetTransaction(tr);
    if (m_query->Open())
        m_query->Close();
    m_query->SetSQLText(text);
    if (!tr->Active())
        tr->StartTransaction();
    if (!m_blobFile.isEmpty())
        BindBlobFileParams();
    m_query->ExecQuery();

    static const QList<int> ddlKinds{skCreate, skAlter, skRecreate, skDrop, skDeclare, skComment, skGrant};
    const bool ddl = ddlKinds.contains(kind) || m_query->IsDDL() || m_query->StatementType() == SQLDDL;
    if (AutoDDL && ddl && tr->Active())
        tr->Commit(); // each schema change is its own committed step
}

void TpFIBScripter::DoCommit(const QString &text)
{
    TFIBTransaction *tr = Transaction();
    if (!tr->Active())
        return;
    if (clauses(text).contains(QStringLiteral("RETAIN"), Qt::CaseInsensitive))
        tr->CommitRetaining();
    else
        tr->Commit();
}

void TpFIBScripter::DoRollback(const QString &text)
{
    TFIBTransaction *tr = Transaction();
    if (!tr->Active())
        return;
    const QStringList words = clauses(text);
    if (words.contains(QStringLiteral("TO"), Qt::CaseInsensitive))
        RunSQL(text, skRollback); // to a savepoint: the server keeps the rest of the transaction
    else if (words.contains(QStringLiteral("RETAIN"), Qt::CaseInsensitive))
        tr->RollbackRetaining();
    else
        tr->Rollback();
}

void TpFIBScripter::DoSet(const QString &text)
{
    const QStringList w = clauses(text);
    const QString what = w.value(1).toUpper();
    const QString value = w.value(2);
    if (what == QLatin1String("AUTODDL")) {
        if (value.compare(QLatin1String("ON"), Qt::CaseInsensitive) == 0)
            AutoDDL = true;
        else if (value.compare(QLatin1String("OFF"), Qt::CaseInsensitive) == 0)
            AutoDDL = false;
        else if (value.isEmpty())
            AutoDDL = !AutoDDL;
    } else if (what == QLatin1String("SQL") && value.compare(QLatin1String("DIALECT"), Qt::CaseInsensitive) == 0) {
        bool ok = false;
        const int dialect = w.value(3).toInt(&ok);
        if (ok && dialect >= 1 && dialect <= 3)
            m_sqlDialect = dialect;
    } else if (what == QLatin1String("NAMES")) {
        // Kept for a later CONNECT or CREATE DATABASE; the open connection stays as it is.
        m_charSet = unquote(value);
    } else if (what == QLatin1String("CLIENTLIB")) {
        ClientLibrary = unquote(value);
    } else if (what == QLatin1String("BLOBFILE")) {
        m_blobFile = unquote(value);
        m_blobLoaded = false;
        m_blobData.clear();
    }
    // Any other SET word is not for the server.
}

void TpFIBScripter::DoConnect(const QString &text)
{
    TFIBDatabase &db = RequireDatabase();
    const QStringList w = clauses(text);
    if (w.size() < 2)
        throw EFIBScriptError(QStringLiteral("CONNECT: database name is missing."));
    const QString name = unquote(w[1]);
    for (int i = 2; i + 1 < w.size(); ++i) {
        const QString key = w[i].toUpper();
        if (key == QLatin1String("USER"))
            m_user = unquote(w[++i]);
        else if (key == QLatin1String("PASSWORD"))
            m_password = unquote(w[++i]);
        else if (key == QLatin1String("ROLE"))
            m_role = unquote(w[++i]);
        else if (key == QLatin1String("SET") && w[i + 1].compare(QLatin1String("NAMES"), Qt::CaseInsensitive) == 0
                 && i + 2 < w.size()) {
            m_charSet = unquote(w[i + 2]);
            i += 2;
        }
    }
    // An embedded attachment asks for no user, and the connection is attached without a character set.
    db.Close();
    db.DBName = name;
    db.Open();
}

void TpFIBScripter::DoCreateDatabase(const QString &text)
{
    TFIBDatabase &db = RequireDatabase();
    QVector<Token> tokens;
    clauses(text, &tokens);
    if (tokens.size() < 3)
        throw EFIBScriptError(QStringLiteral("CREATE DATABASE: database name is missing."));
    const QString name = unquote(tokens[2].text);
    QString rest = text.mid(tokens[2].end).trimmed();
    if (!m_charSet.isEmpty() && !rest.contains(QRegularExpression(QStringLiteral("\\bSET\\s+NAMES\\b"),
                                                                   QRegularExpression::CaseInsensitiveOption)))
        rest = QStringLiteral("SET NAMES ") + sqlLiteral(m_charSet) + QLatin1Char(' ') + rest;

    db.Close();
    db.DBName = name;
    db.SQLDialect = m_sqlDialect;
    db.LibraryName = ClientLibrary;
    db.DBParams = rest.trimmed().isEmpty() ? QStringList() : QStringList{rest.trimmed()};
    db.CreateDatabase();
}

void TpFIBScripter::DoDropDatabase()
{
    TFIBDatabase &db = RequireDatabase();
    if (db.DBName.isEmpty())
        throw EFIBScriptError(QStringLiteral("DROP DATABASE: database name is missing."));
    // A private attachment would not see what the open one holds; the drop goes through the open one.
    if (!db.Connected())
        db.Open();
    db.DropDatabase();
}

void TpFIBScripter::DoDescribe(const QString &text)
{
    QVector<Token> tokens;
    const QStringList w = clauses(text, &tokens);
    const QString type = w.value(1).toUpper();
    static const QStringList named{"DOMAIN",    "TABLE",     "VIEW",     "PROCEDURE", "TRIGGER", "FUNCTION",
                                   "EXCEPTION", "GENERATOR", "SEQUENCE", "INDEX",     "FILTER",  "ROLE"};
    QString target;
    int textAt = 0;
    if (type == QLatin1String("DATABASE")) {
        target = QStringLiteral("DATABASE");
        textAt = 2;
    } else if (named.contains(type) && w.size() > 2) {
        target = type + QLatin1Char(' ') + w[2];
        textAt = 3;
    } else if ((type == QLatin1String("COLUMN") || type == QLatin1String("FIELD")) && w.size() > 2) {
        target = QStringLiteral("COLUMN ") + w[2]; // written as TABLE.COLUMN
        textAt = 3;
    } else if (type == QLatin1String("PARAMETER") && w.size() > 2) {
        target = QStringLiteral("PARAMETER ") + w[2]; // written as PROCEDURE.PARAMETER
        textAt = 3;
    } else {
        throw EFIBScriptError(QStringLiteral("Unsupported DESCRIBE type ") + w.value(1));
    }
    QString description;
    if (textAt < tokens.size())
        description = tokens[textAt].quoted && textAt + 1 == tokens.size()
                          ? unquote(tokens[textAt].text)
                          : text.mid(tokens[textAt].begin).trimmed();
    const QString value = textAt < tokens.size() ? sqlLiteral(description) : QStringLiteral("NULL");
    RunSQL(QStringLiteral("COMMENT ON ") + target + QStringLiteral(" IS ") + value, skComment);
}

QString TpFIBScripter::BesideScript(const QString &fileName) const
{
    if (QFileInfo(fileName).isAbsolute() || m_fileName.isEmpty())
        return fileName;
    return QFileInfo(m_fileName).dir().filePath(fileName);
}

void TpFIBScripter::DoInput(const QString &text)
{
    QVector<Token> tokens;
    clauses(text, &tokens);
    if (tokens.size() < 2)
        throw EFIBScriptError(QStringLiteral("INPUT: file name is missing."));
    const QString name = tokens[1].quoted ? unquote(tokens[1].text) : text.mid(tokens[1].begin).trimmed();
    if (m_depth >= 16)
        throw EFIBScriptError(QStringLiteral("INPUT: scripts nested too deeply at \"%1\".").arg(name));

    TpFIBScripter nested;
    nested.setObjectName(objectName());
    nested.SetDatabase(m_database);
    nested.SetTransaction(Transaction());
    nested.AutoDDL = AutoDDL;
    nested.ClientLibrary = ClientLibrary;
    nested.Defines = m_runDefines;
    nested.OnExecuteError = OnExecuteError;
    nested.m_depth = m_depth + 1;
    nested.m_sqlDialect = m_sqlDialect;
    nested.m_charSet = m_charSet;
    nested.m_blobFile = m_blobFile;
    nested.m_user = m_user;
    nested.m_password = m_password;
    nested.m_role = m_role;
    nested.m_runDefines = m_runDefines;
    nested.LoadScriptFromFile(BesideScript(name));
    nested.Parse();
    nested.Run(1);
    // The settings a nested script makes hold for the rest of this one.
    AutoDDL = nested.AutoDDL;
    ClientLibrary = nested.ClientLibrary;
    m_sqlDialect = nested.m_sqlDialect;
    m_charSet = nested.m_charSet;
    if (m_blobFile != nested.m_blobFile) {
        m_blobFile = nested.m_blobFile;
        m_blobLoaded = false;
    }
    m_runDefines = nested.m_runDefines;
}

void TpFIBScripter::DoDirective(const TFIBScriptStatement &st, const QString &text)
{
    const QString inner = text.mid(1, text.endsWith(QLatin1Char('}')) ? text.size() - 2 : text.size() - 1);
    QString word, argument;
    splitDirective(inner, word, argument);
    if (word == QLatin1String("DEFINE") && !argument.isEmpty()) {
        if (!m_runDefines.contains(argument, Qt::CaseInsensitive))
            m_runDefines.append(argument);
    } else if (word == QLatin1String("UNDEF") && !argument.isEmpty()) {
        m_runDefines.removeIf([&](const QString &d) { return d.compare(argument, Qt::CaseInsensitive) == 0; });
    } else {
        throw EFIBScriptError(QStringLiteral("Unknown directive :\r\nLine %1\r\n%2").arg(st.StartLine + 1).arg(text),
                              st.StartLine + 1);
    }
}

// Parameters named ":hOOOOOOOO_LLLLLLLL" take LLLLLLLL bytes at offset OOOOOOOO (hex) of the blob file.
void TpFIBScripter::BindBlobFileParams()
{
    static const QRegularExpression ref(QStringLiteral("^[hH]([0-9A-Fa-f]{8})_([0-9A-Fa-f]{8})$"));
    if (!m_query->SQLText().contains(QLatin1Char(':')))
        return;
    m_query->Prepare();
    for (int i = 0; i < m_query->Params().Count(); ++i) {
        TFIBXSQLVAR &param = m_query->Params()[i];
        const auto m = ref.match(param.Name());
        if (!m.hasMatch())
            continue;
        if (!m_blobLoaded) {
            QFile file(BesideScript(m_blobFile));
            if (!file.open(QIODevice::ReadOnly))
                throw EFIBScriptError(QStringLiteral("Cannot open blob file \"%1\": %2")
                                          .arg(m_blobFile, file.errorString()));
            m_blobData = file.readAll();
            m_blobLoaded = true;
        }
        const qint64 offset = m.captured(1).toLongLong(nullptr, 16);
        const qint64 length = m.captured(2).toLongLong(nullptr, 16);
        if (offset + length > m_blobData.size())
            throw EFIBScriptError(QStringLiteral("Blob file \"%1\" has no bytes for %2").arg(m_blobFile, param.Name()));
        param.SetAsString(AnsiDecode(m_blobData.constData() + offset, int(length)));
    }
}

#pragma once
// Running a text of many SQL statements: the splitter that finds the statements in the lines of a script,
// and the runner that executes them one by one on the program's connection.

#include "fib_database.h"
#include "fib_errors.h"
#include "fib_query.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>
#include <memory>

// What a statement does when run, told by its first words.
enum TScriptStatementKind {
    skSQL = 0,             // anything else, run as SQL
    skEmpty = 1,           // starts with a lone "-" or "/", or a brace comment: run unless empty
    skDML = 2,             // DELETE, UPDATE, MERGE, EXECUTE BLOCK
    skConnect = 3,
    skDisconnect = 4,
    skReconnect = 5,
    skCreateDatabase = 6,
    skDropDatabase = 7,
    skCommit = 8,
    skRollback = 9,
    skCreate = 10,
    skAlter = 11,
    skRecreate = 12,
    skDrop = 13,
    skSet = 14,
    skSetGenerator = 15,
    skSetStatistics = 16,
    skDescribe = 17,
    skDeclare = 18,
    skComment = 19,
    skGrant = 20,          // GRANT and REVOKE
    skInput = 21,
    skBatch = 22,
    skBatchStart = 23,
    skBatchExecute = 24,
    skExecute = 25,
    skInsert = 26,
    skReinsert = 27,
    skDirective = 28       // a "{$...}" directive
};

// The object a CREATE, ALTER, RECREATE, DROP (or EXECUTE BLOCK) statement is about.
enum TScriptObjectKind {
    sokNone = 0, sokDatabase = 1, sokDomain = 2, sokTable = 3, sokView = 4, sokProcedure = 5, sokTrigger = 6,
    sokExternalFunction = 7, sokException = 8, sokGenerator = 9, sokIndex = 10, sokConstraint = 11, sokFilter = 12,
    sokColumn = 13, sokParameter = 14, sokRole = 15, sokBlock = 16, sokUser = 17, sokPackage = 18,
    sokPackageBody = 19, sokFunction = 20
};

// One statement of a script, kept as a stretch of the script's lines. Lines and columns count from 0;
// EndPos is the column just past the statement's last character on EndLine.
struct TFIBScriptStatement
{
    int StartLine = 0;
    int StartPos = 0;
    int EndLine = 0;
    int EndPos = 0;
    int Kind = skSQL;
    int ObjectKind = sokNone;
    QString ObjectName;
};

// A script that cannot be split or a statement the runner cannot carry out. Line and column count from 1.
class EFIBScriptError : public EDatabaseError
{
public:
    explicit EFIBScriptError(const QString &message, int line = 0, int column = 0)
        : EDatabaseError(message), Line(line), Column(column) {}
    int Line = 0;
    int Column = 0;
};

// Splits the lines of a script into statements: terminators and SET TERM, procedure and trigger bodies
// written without a change of terminator, comments, brace comments and directives.
class TpFIBScriptParser
{
public:
    // Raises EFIBScriptError for a "{" inside a statement and for conditionals it cannot resolve.
    // `defines` are the names an {$IFDEF} finds defined.
    void ParseScript(const QStringList &lines, const QString &terminator = QStringLiteral(";"),
                     const QStringList &defines = QStringList());

    int Count() const { return m_count; }
    // Room in the statement table; equals Count() once a parse is done.
    int Capacity() const { return int(m_items.size()); }
    const TFIBScriptStatement &Statement(int index) const { return m_items.at(index); }
    // The exact text of a statement, comments included, lines joined by "\n".
    QString StatementText(int index) const;
    const QStringList &Lines() const { return m_lines; }

    // The text between two positions of `lines`, the end excluded.
    static QString TextBetween(const QStringList &lines, int startLine, int startPos, int endLine, int endPos);

private:
    friend class TScriptScanner;
    void Add(const TFIBScriptStatement &statement);

    QStringList m_lines;
    QVector<TFIBScriptStatement> m_items;
    int m_count = 0;
};

// Runs a script against the open database, statement by statement, stopping at the first failure.
class TpFIBScripter : public QObject
{
public:
    // Called for a statement that failed with an EFIBError; `statementNo` counts from 1, `line` from 1.
    // The transaction is rolled back if `rollback` stays set, the run ends if `stop` stays set.
    using ExecuteErrorEvent = std::function<void(TpFIBScripter *sender, int statementNo, int line,
                                                 const QString &statement, const EFIBError &error, bool &rollback,
                                                 bool &stop)>;

    explicit TpFIBScripter(QObject *owner = nullptr);
    ~TpFIBScripter() override;

    // The lines of the script; replacing them means a new parse before the next run.
    const QStringList &Script() const { return m_script; }
    void SetScript(const QStringList &lines);
    void SetScriptText(const QString &text);
    // Replaces the script by a file's lines: UTF-8 when the bytes are valid UTF-8, else Windows-1251.
    void LoadScriptFromFile(const QString &fileName);
    // The file last loaded; a relative INPUT or BLOBFILE is found beside it.
    QString ScriptFileName() const { return m_fileName; }

    TFIBDatabase *Database() const { return m_database; }
    void SetDatabase(TFIBDatabase *database);
    // The transaction set, or the runner's own one when none is.
    TFIBTransaction *Transaction();
    void SetTransaction(TFIBTransaction *transaction) { m_transaction = transaction; }

    bool AutoDDL = true;
    QString ClientLibrary = QStringLiteral("gds32.dll");
    QStringList Defines;
    ExecuteErrorEvent OnExecuteError;

    // Settings a run collects from SET statements; dialect and character set are reset at each run.
    int SQLDialect() const { return m_sqlDialect; }
    QString CharSet() const { return m_charSet; }
    QString BlobFile() const { return m_blobFile; }
    QString ConnectUser() const { return m_user; }
    QString ConnectRole() const { return m_role; }
    // Names defined for the run so far by {$DEFINE} and {$UNDEF}.
    QStringList ActiveDefines() const { return m_runDefines; }

    bool Parsed() const { return m_parsed; }
    void Parse();
    int StatementsCount() const { return m_parser.Count(); }
    const TFIBScriptStatement &Statement(int index) const { return m_parser.Statement(index); }
    QString StatementText(int index) const { return m_parser.StatementText(index); }
    // Number (from 1) of the statement being run, or of the last one run.
    int CurrentStatement() const { return m_current; }

    // Runs the statements from number `first` (counted from 1) to the last. No commit follows the last one.
    void ExecuteScript(int first = 1);

private:
    void Run(int first);
    void ExecuteStatement(const TFIBScriptStatement &statement, const QString &text);
    void RunSQL(const QString &text, int kind);
    TFIBDatabase &RequireDatabase();
    void DoCommit(const QString &text);
    void DoRollback(const QString &text);
    void DoSet(const QString &text);
    void DoConnect(const QString &text);
    void DoCreateDatabase(const QString &text);
    void DoDropDatabase();
    void DoDescribe(const QString &text);
    void DoInput(const QString &text);
    void DoDirective(const TFIBScriptStatement &statement, const QString &text);
    void BindBlobFileParams();
    QString BesideScript(const QString &fileName) const;

    QStringList m_script;
    QString m_fileName;
    bool m_parsed = false;
    TpFIBScriptParser m_parser;

    TFIBDatabase *m_database = nullptr;
    TFIBTransaction *m_transaction = nullptr;
    std::unique_ptr<TpFIBTransaction> m_ownTransaction;
    std::unique_ptr<TpFIBQuery> m_query;

    int m_sqlDialect = 3;
    QString m_charSet;
    QString m_blobFile;
    QByteArray m_blobData;
    bool m_blobLoaded = false;
    QString m_user, m_password, m_role;
    QStringList m_runDefines;
    QString m_lastInsert;
    int m_current = 0;
    int m_depth = 0;
};

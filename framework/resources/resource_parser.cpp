#include "framework/resources/resource_parser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <limits>
#include <set>
#include <vector>

namespace tessaly {

QString ResourceParseError::toString() const {
    return QStringLiteral("%1:%2: %3").arg(file).arg(line).arg(message);
}

namespace {

enum class TokenKind { Identifier, Number, String, Punct, End };

struct Token {
    TokenKind kind = TokenKind::End;
    QString text; // identifier, decoded string, punctuation, or the number as written
    qint64 number = 0;
    int line = 0;
    int file = 0; // index into Context::files
};

struct Symbol {
    std::optional<qint64> value; // empty: defined, but not as a number
    int file = -1;               // where it was defined, for messages; -1 for the platform's
    int line = 0;
};

// Thrown inside the parser only; parseResourceScript turns it into a ResourceParseError.
struct Failure {
    ResourceParseError error;
};

constexpr int kMaxIncludeDepth = 16;
// The script and everything it includes, counted every time a file is read: repeated includes
// of a file that includes repeatedly multiply, and would otherwise grow without bound.
constexpr qsizetype kMaxTextRead = 16 * 1024 * 1024;
constexpr qint64 kMaxResourceId = 65535;

struct Context {
    QStringList files;
    // The files being read, the script first and the innermost include last.
    QStringList includeChain;
    qsizetype textRead = 0;
    std::map<QString, Symbol> symbols;
    IncludeResolver resolveInclude;

    [[noreturn]] void fail(int file, int line, const QString& message) const {
        throw Failure{ResourceParseError{files.value(file), line, message}};
    }
};

QString describe(const Token& token) {
    switch (token.kind) {
    case TokenKind::End:
        return QStringLiteral("end of file");
    case TokenKind::String:
        return QStringLiteral("\"%1\"").arg(token.text.left(40));
    case TokenKind::Punct:
        return QStringLiteral("'%1'").arg(token.text);
    default:
        return token.text;
    }
}

// ---------------------------------------------------------------------------------------------
// Expressions, shared by the parser and by #define values.

class TokenCursor {
public:
    TokenCursor(const std::vector<Token>& tokens, Context& context)
        : tokens_(tokens)
        , context_(context) {}

    const Token& peek(size_t ahead = 0) const {
        const size_t index = position_ + ahead;
        return index < tokens_.size() ? tokens_[index] : tokens_.back();
    }
    const Token& next() {
        const Token& token = peek();
        if (position_ < tokens_.size() - 1)
            ++position_;
        return token;
    }
    bool atEnd() const { return peek().kind == TokenKind::End; }

    bool isPunct(const char* punct, size_t ahead = 0) const {
        const Token& token = peek(ahead);
        return token.kind == TokenKind::Punct && token.text == QLatin1String(punct);
    }
    bool isKeyword(const char* keyword, size_t ahead = 0) const {
        const Token& token = peek(ahead);
        return token.kind == TokenKind::Identifier &&
               token.text.compare(QLatin1String(keyword), Qt::CaseInsensitive) == 0;
    }
    bool acceptPunct(const char* punct) {
        if (!isPunct(punct))
            return false;
        next();
        return true;
    }
    bool acceptKeyword(const char* keyword) {
        if (!isKeyword(keyword))
            return false;
        next();
        return true;
    }

    [[noreturn]] void failHere(const QString& message) const {
        const Token& token = peek();
        context_.fail(token.file, token.line, message);
    }
    [[noreturn]] void expected(const QString& what) const {
        failHere(QStringLiteral("expected %1, found %2").arg(what, describe(peek())));
    }

    void expectPunct(const char* punct) {
        if (!acceptPunct(punct))
            expected(QStringLiteral("'%1'").arg(QLatin1String(punct)));
    }

    qint64 expression() { return orExpression(); }

    bool startsExpression() const {
        const Token& token = peek();
        return token.kind == TokenKind::Number || token.kind == TokenKind::Identifier ||
               isPunct("(") || isPunct("-") || isPunct("~") || isPunct("+");
    }

    Context& context() { return context_; }

private:
    qint64 orExpression() {
        qint64 value = andExpression();
        while (acceptPunct("|"))
            value |= andExpression();
        return value;
    }
    qint64 andExpression() {
        qint64 value = additive();
        while (acceptPunct("&"))
            value &= additive();
        return value;
    }
    qint64 additive() {
        qint64 value = multiplicative();
        for (;;) {
            if (acceptPunct("+")) {
                const qint64 right = multiplicative();
                failOnOverflow(__builtin_add_overflow(value, right, &value));
            } else if (acceptPunct("-")) {
                const qint64 right = multiplicative();
                failOnOverflow(__builtin_sub_overflow(value, right, &value));
            } else {
                return value;
            }
        }
    }
    qint64 multiplicative() {
        qint64 value = unary();
        for (;;) {
            if (acceptPunct("*")) {
                const qint64 right = unary();
                failOnOverflow(__builtin_mul_overflow(value, right, &value));
            } else if (isPunct("/")) {
                next();
                const qint64 divisor = unary();
                if (divisor == 0)
                    failHere(QStringLiteral("division by zero"));
                failOnOverflow(value == std::numeric_limits<qint64>::min() && divisor == -1);
                value /= divisor;
            } else {
                return value;
            }
        }
    }
    void failOnOverflow(bool overflow) const {
        if (overflow)
            failHere(QStringLiteral("number too large"));
    }
    qint64 unary() {
        if (++nesting_ > kMaxNesting)
            failHere(QStringLiteral("expression nested too deeply"));
        const qint64 value = unaryUnlimited();
        --nesting_;
        return value;
    }
    qint64 unaryUnlimited() {
        if (acceptPunct("-")) {
            const qint64 value = unary();
            failOnOverflow(value == std::numeric_limits<qint64>::min());
            return -value;
        }
        if (acceptPunct("+"))
            return unary();
        if (acceptPunct("~"))
            return ~unary();
        return primary();
    }
    qint64 primary() {
        const Token& token = peek();
        if (token.kind == TokenKind::Number) {
            next();
            return token.number;
        }
        if (token.kind == TokenKind::Identifier) {
            const auto found = context_.symbols.find(token.text);
            if (found == context_.symbols.end())
                failHere(QStringLiteral("unknown symbol %1").arg(token.text));
            if (!found->second.value) {
                failHere(QStringLiteral("symbol %1 (defined at %2:%3) is not a number")
                             .arg(token.text, context_.files.value(found->second.file))
                             .arg(found->second.line));
            }
            next();
            return *found->second.value;
        }
        if (acceptPunct("(")) {
            const qint64 value = expression();
            expectPunct(")");
            return value;
        }
        expected(QStringLiteral("a number or a symbol"));
    }

    static constexpr int kMaxNesting = 200;

    const std::vector<Token>& tokens_;
    Context& context_;
    size_t position_ = 0;
    int nesting_ = 0;
};

// ---------------------------------------------------------------------------------------------
// Lexer with the preprocessor lines folded in.

class Lexer {
public:
    Lexer(Context& context, std::vector<Token>& out, int depth)
        : context_(context)
        , out_(out)
        , depth_(depth) {}

    // Tokenizes `text` (the whole of file `file`, or one directive's value starting at `line`).
    void run(const QString& text, int file, int line = 1, bool directivesAllowed = true) {
        text_ = text;
        file_ = file;
        line_ = line;
        pos_ = 0;
        directivesAllowed_ = directivesAllowed;
        bool lineStart = true;
        while (pos_ < text_.size()) {
            const QChar c = text_[pos_];
            if (c == u'\n') {
                ++line_;
                ++pos_;
                lineStart = true;
                continue;
            }
            if (c.isSpace()) {
                ++pos_;
                continue;
            }
            if (c == u'/' && peekChar(1) == u'/') {
                skipToLineEnd();
                continue;
            }
            if (c == u'/' && peekChar(1) == u'*') {
                skipBlockComment();
                continue;
            }
            if (c == u'#' && lineStart && directivesAllowed_) {
                directive();
                continue;
            }
            lineStart = false;
            if (skipping()) {
                skipToLineEnd();
                continue;
            }
            if (c == u'"' || (c == u'L' && peekChar(1) == u'"')) {
                stringLiteral();
            } else if (c.isDigit()) {
                numberLiteral();
            } else if (c.isLetter() || c == u'_') {
                identifier();
            } else if (QStringLiteral(",|()+-*/&~{}").contains(c)) {
                push(TokenKind::Punct, QString(c));
                ++pos_;
            } else {
                fail(QStringLiteral("unexpected character '%1'").arg(c));
            }
        }
        if (directivesAllowed_ && !conditions_.empty())
            fail(QStringLiteral("#if without #endif"));
    }

private:
    struct Condition {
        bool active;       // this branch's lines are used
        bool parentActive; // the enclosing branch's lines are used
        bool elseSeen = false;
    };

    [[noreturn]] void fail(const QString& message) const { context_.fail(file_, line_, message); }

    QChar peekChar(int ahead) const {
        const qsizetype index = pos_ + ahead;
        return index < text_.size() ? text_[index] : QChar();
    }

    bool skipping() const { return !conditions_.empty() && !conditions_.back().active; }

    void push(TokenKind kind, const QString& text, qint64 number = 0) {
        out_.push_back(Token{kind, text, number, line_, file_});
    }

    void skipToLineEnd() {
        while (pos_ < text_.size() && text_[pos_] != u'\n')
            ++pos_;
    }

    void skipBlockComment() {
        const int startLine = line_;
        pos_ += 2;
        while (pos_ < text_.size()) {
            if (text_[pos_] == u'*' && peekChar(1) == u'/') {
                pos_ += 2;
                return;
            }
            if (text_[pos_] == u'\n')
                ++line_;
            ++pos_;
        }
        line_ = startLine;
        fail(QStringLiteral("unterminated comment"));
    }

    void stringLiteral() {
        if (text_[pos_] == u'L')
            ++pos_;
        ++pos_; // opening quote
        QString value;
        for (;;) {
            if (pos_ >= text_.size() || text_[pos_] == u'\n')
                fail(QStringLiteral("unterminated string"));
            const QChar c = text_[pos_];
            if (c == u'"') {
                if (peekChar(1) == u'"') { // "" stands for one quote
                    value += u'"';
                    pos_ += 2;
                    continue;
                }
                ++pos_;
                break;
            }
            if (c == u'\\') {
                value += escape();
                continue;
            }
            value += c;
            ++pos_;
        }
        push(TokenKind::String, value);
    }

    QString escape() {
        const QChar c = peekChar(1);
        pos_ += 2;
        switch (c.unicode()) {
        case u'n':
            return QStringLiteral("\n");
        case u't':
            return QStringLiteral("\t");
        case u'r':
            return QStringLiteral("\r");
        case u'a':
            return QStringLiteral("\a");
        case u'b':
            return QStringLiteral("\b");
        case u'f':
            return QStringLiteral("\f");
        case u'v':
            return QStringLiteral("\v");
        case u'\\':
            return QStringLiteral("\\");
        case u'"':
            return QStringLiteral("\"");
        case u'\'':
            return QStringLiteral("'");
        case u'x':
            return numericEscape(16, 4);
        default:
            if (c >= u'0' && c <= u'7') {
                --pos_;
                return numericEscape(8, 3);
            }
            if (c.isNull() || c == u'\n')
                fail(QStringLiteral("unterminated string"));
            fail(QStringLiteral("unknown escape sequence \\%1 in string").arg(c));
        }
    }

    static int digitValue(QChar c, int base) {
        const char16_t u = c.unicode();
        int value = -1;
        if (u >= u'0' && u <= u'9')
            value = u - u'0';
        else if (u >= u'a' && u <= u'f')
            value = u - u'a' + 10;
        else if (u >= u'A' && u <= u'F')
            value = u - u'A' + 10;
        return value < base ? value : -1;
    }

    // \x with up to four hexadecimal digits, or up to three octal digits; pos_ at the first.
    QString numericEscape(int base, int maxDigits) {
        char16_t value = 0;
        int digits = 0;
        while (digits < maxDigits && pos_ < text_.size()) {
            const int digit = digitValue(text_[pos_], base);
            if (digit < 0)
                break;
            value = char16_t(value * base + digit);
            ++digits;
            ++pos_;
        }
        if (digits == 0)
            fail(QStringLiteral("\\x needs hexadecimal digits"));
        return QString(QChar(value));
    }

    void numberLiteral() {
        const qsizetype start = pos_;
        int base = 10;
        if (text_[pos_] == u'0' && (peekChar(1) == u'x' || peekChar(1) == u'X')) {
            base = 16;
            pos_ += 2;
        }
        const qsizetype digitsStart = pos_;
        while (pos_ < text_.size() && (text_[pos_].isLetterOrNumber() || text_[pos_] == u'_'))
            ++pos_;
        QStringView digits = QStringView(text_).mid(digitsStart, pos_ - digitsStart);
        while (!digits.isEmpty() && (digits.endsWith(u'L', Qt::CaseInsensitive) ||
                                     digits.endsWith(u'U', Qt::CaseInsensitive))) {
            digits.chop(1);
        }
        bool ok = false;
        const qint64 value = digits.toLongLong(&ok, base);
        const QString written = text_.mid(start, pos_ - start);
        if (!ok || value > std::numeric_limits<quint32>::max())
            fail(QStringLiteral("bad number %1").arg(written));
        push(TokenKind::Number, written, value);
    }

    void identifier() {
        const qsizetype start = pos_;
        while (pos_ < text_.size() && (text_[pos_].isLetterOrNumber() || text_[pos_] == u'_'))
            ++pos_;
        push(TokenKind::Identifier, text_.mid(start, pos_ - start));
    }

    // One logical line from '#' on (backslash-newline joins lines); pos_ ends at its newline.
    QString directiveLine() {
        const qsizetype end = text_.indexOf(u'\n', pos_);
        const qsizetype lineEnd = end < 0 ? text_.size() : end;
        if (lineEnd == pos_ || text_[lineEnd - 1] != u'\\') { // no continuation: one slice
            const QString line = text_.mid(pos_, lineEnd - pos_);
            pos_ = lineEnd;
            return line;
        }
        QString line;
        while (pos_ < text_.size() && text_[pos_] != u'\n') {
            if (text_[pos_] == u'\\' && peekChar(1) == u'\n') {
                pos_ += 2;
                ++line_;
                line += u' ';
                continue;
            }
            line += text_[pos_++];
        }
        return line;
    }

    void directive() {
        const int line = line_;
        const QString content = directiveLine().mid(1).trimmed(); // without '#'
        qsizetype nameEnd = 0;
        while (nameEnd < content.size() && content[nameEnd].isLetter())
            ++nameEnd;
        const QString name = content.left(nameEnd);
        const QString rest = content.mid(nameEnd).trimmed();
        const int savedLine = line_;
        line_ = line;

        if (name == u"ifdef" || name == u"ifndef") {
            const bool defined = context_.symbols.count(firstWord(rest)) > 0;
            const bool parentActive = !skipping();
            conditions_.push_back(
                Condition{parentActive && (name == u"ifdef" ? defined : !defined), parentActive});
        } else if (name == u"else") {
            if (conditions_.empty() || conditions_.back().elseSeen)
                fail(QStringLiteral("#else without #if"));
            Condition& condition = conditions_.back();
            condition.active = condition.parentActive && !condition.active;
            condition.elseSeen = true;
        } else if (name == u"endif") {
            if (conditions_.empty())
                fail(QStringLiteral("#endif without #if"));
            conditions_.pop_back();
        } else if (skipping()) {
            // Lines of an inactive branch are not looked at.
        } else if (name == u"define") {
            define(rest);
        } else if (name == u"undef") {
            context_.symbols.erase(firstWord(rest));
        } else if (name == u"include") {
            include(rest);
        } else if (name == u"pragma") {
            // Only meaningful to the compiler (`#pragma once` in a shared header).
        } else {
            fail(QStringLiteral("unsupported directive #%1").arg(name));
        }
        line_ = savedLine;
    }

    static QString firstWord(const QString& text) {
        qsizetype end = 0;
        while (end < text.size() && (text[end].isLetterOrNumber() || text[end] == u'_'))
            ++end;
        return text.left(end);
    }

    void define(const QString& rest) {
        const QString name = firstWord(rest);
        if (name.isEmpty() || name[0].isDigit())
            fail(QStringLiteral("expected a name after #define"));
        Symbol symbol{std::nullopt, file_, line_};
        const QString valueText = rest.mid(name.size());
        const QString trimmedValue = valueText.trimmed();
        const bool hex = trimmedValue.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
        bool plainNumber = false;
        const qint64 number = hex ? trimmedValue.mid(2).toLongLong(&plainNumber, 16)
                                  : trimmedValue.toLongLong(&plainNumber, 10);
        if (plainNumber) { // the common case, without a lexer of its own
            symbol.value = number;
        } else if (!valueText.startsWith(u'(')) { // a function-like macro is never a number
            try {
                std::vector<Token> valueTokens;
                Lexer(context_, valueTokens, depth_).run(valueText, file_, line_, false);
                if (!valueTokens.empty()) {
                    valueTokens.push_back(Token{TokenKind::End, {}, 0, line_, file_});
                    TokenCursor cursor(valueTokens, context_);
                    const qint64 value = cursor.expression();
                    if (cursor.atEnd())
                        symbol.value = value;
                }
            } catch (const Failure&) {
                // Not a number (a text or a type, say): fine until a resource uses it.
            }
        }
        context_.symbols[name] = symbol;
    }

    void include(const QString& rest) {
        QString name;
        if (rest.size() >= 2 && ((rest.startsWith(u'"') && rest.indexOf(u'"', 1) > 0) ||
                                 (rest.startsWith(u'<') && rest.indexOf(u'>', 1) > 0))) {
            const QChar close = rest[0] == u'"' ? u'"' : u'>';
            name = rest.mid(1, rest.indexOf(close, 1) - 1);
        }
        if (name.isEmpty())
            fail(QStringLiteral("expected a file name in quotes after #include"));
        if (depth_ >= kMaxIncludeDepth)
            fail(QStringLiteral("#include nested too deeply (at \"%1\")").arg(name));
        QString displayName = name;
        std::optional<QString> text;
        if (context_.resolveInclude)
            text = context_.resolveInclude(name, context_.files.value(file_), &displayName);
        if (!text)
            fail(QStringLiteral("cannot open include file \"%1\"").arg(name));
        if (context_.includeChain.contains(displayName))
            fail(QStringLiteral("#include cycle: \"%1\" includes itself through %2")
                     .arg(displayName, context_.includeChain.join(QStringLiteral(" → "))));
        context_.textRead += text->size();
        if (context_.textRead > kMaxTextRead)
            fail(QStringLiteral("the script and its includes come to more than %1 MB of text "
                                "(at \"%2\")")
                     .arg(kMaxTextRead / (1024 * 1024))
                     .arg(name));
        context_.files.append(displayName);
        context_.includeChain.append(displayName);
        Lexer nested(context_, out_, depth_ + 1);
        nested.run(*text, int(context_.files.size() - 1));
        context_.includeChain.removeLast();
    }

    Context& context_;
    std::vector<Token>& out_;
    int depth_ = 0;
    QString text_;
    int file_ = 0;
    int line_ = 1;
    qsizetype pos_ = 0;
    bool directivesAllowed_ = true;
    std::vector<Condition> conditions_;
};

// ---------------------------------------------------------------------------------------------
// Parser over the token stream.

const QStringList& memoryFlags() {
    static const QStringList flags{
        QStringLiteral("PRELOAD"),  QStringLiteral("LOADONCALL"),  QStringLiteral("FIXED"),
        QStringLiteral("MOVEABLE"), QStringLiteral("DISCARDABLE"), QStringLiteral("PURE"),
        QStringLiteral("IMPURE"),   QStringLiteral("SHARED"),      QStringLiteral("NONSHARED")};
    return flags;
}

// Statements whose first argument is the control's text.
const QStringList& textControls() {
    static const QStringList statements{
        QStringLiteral("LTEXT"),         QStringLiteral("RTEXT"),
        QStringLiteral("CTEXT"),         QStringLiteral("PUSHBUTTON"),
        QStringLiteral("DEFPUSHBUTTON"), QStringLiteral("GROUPBOX"),
        QStringLiteral("AUTOCHECKBOX"),  QStringLiteral("AUTORADIOBUTTON"),
        QStringLiteral("CHECKBOX"),      QStringLiteral("RADIOBUTTON"),
        QStringLiteral("AUTO3STATE"),    QStringLiteral("STATE3"),
        QStringLiteral("PUSHBOX")};
    return statements;
}

// Statements that start with the control's id.
const QStringList& plainControls() {
    static const QStringList statements{QStringLiteral("EDITTEXT"), QStringLiteral("COMBOBOX"),
                                        QStringLiteral("LISTBOX"), QStringLiteral("SCROLLBAR")};
    return statements;
}

class Parser {
public:
    Parser(const std::vector<Token>& tokens, Context& context, ResourceScript& script)
        : in_(tokens, context)
        , script_(script) {}

    void run() {
        while (!in_.atEnd())
            topLevel();
    }

private:
    void topLevel() {
        if (in_.acceptKeyword("STRINGTABLE")) {
            stringTable();
            return;
        }
        if (in_.acceptKeyword("LANGUAGE")) { // the script's language: chosen by file, not here
            languageArguments();
            return;
        }
        if (!in_.startsExpression())
            in_.expected(QStringLiteral("a resource id or STRINGTABLE"));
        const Token& idToken = in_.peek();
        const int id = resourceId(QStringLiteral("resource id"));
        if (in_.acceptKeyword("DIALOG"))
            dialog(id, false, idToken);
        else if (in_.acceptKeyword("DIALOGEX"))
            dialog(id, true, idToken);
        else if (in_.acceptKeyword("MENU"))
            menu(id, idToken);
        else if (in_.peek().kind == TokenKind::Identifier &&
                 (in_.peek(1).kind == TokenKind::String ||
                  memoryFlags().contains(in_.peek(1).text, Qt::CaseInsensitive)))
            fileResource(id);
        else
            in_.expected(QStringLiteral("a resource type (DIALOG, DIALOGEX, MENU, BITMAP, ...)"));
    }

    void languageArguments() {
        in_.expression();
        in_.expectPunct(",");
        in_.expression();
    }

    void skipMemoryFlags() {
        while (in_.peek().kind == TokenKind::Identifier &&
               memoryFlags().contains(in_.peek().text, Qt::CaseInsensitive)) {
            in_.next();
        }
    }

    void beginBlock() {
        if (!in_.acceptKeyword("BEGIN") && !in_.acceptPunct("{"))
            in_.expected(QStringLiteral("BEGIN"));
    }
    bool atBlockEnd() const { return in_.isKeyword("END") || in_.isPunct("}"); }
    void endBlock() {
        if (!in_.acceptKeyword("END") && !in_.acceptPunct("}"))
            in_.expected(QStringLiteral("END"));
    }

    int resourceId(const QString& what, qint64 minimum = 0) {
        if (!in_.startsExpression())
            in_.expected(what);
        const Token& first = in_.peek();
        const qint64 value = in_.expression();
        if (value < minimum || value > kMaxResourceId) {
            in_.context().fail(first.file, first.line,
                               QStringLiteral("%1 %2 is out of range (%3 to %4)")
                                   .arg(what)
                                   .arg(value)
                                   .arg(minimum)
                                   .arg(kMaxResourceId));
        }
        return int(value);
    }

    int number(const QString& what) {
        if (!in_.startsExpression())
            in_.expected(what);
        const Token& first = in_.peek();
        const qint64 value = in_.expression();
        if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
            in_.context().fail(first.file, first.line, QStringLiteral("%1 is too large").arg(what));
        return int(value);
    }

    // One or more adjacent string literals, joined.
    QString string(const QString& what) {
        if (in_.peek().kind != TokenKind::String)
            in_.expected(what);
        QString text;
        while (in_.peek().kind == TokenKind::String)
            text += in_.next().text;
        return text;
    }

    void stringTable() {
        skipMemoryFlags();
        while (in_.isKeyword("LANGUAGE") || in_.isKeyword("CHARACTERISTICS") ||
               in_.isKeyword("VERSION")) {
            if (in_.acceptKeyword("LANGUAGE"))
                languageArguments();
            else {
                in_.next();
                in_.expression();
            }
        }
        beginBlock();
        while (!atBlockEnd()) {
            if (in_.atEnd())
                in_.expected(QStringLiteral("END"));
            const Token& idToken = in_.peek();
            const int id = resourceId(QStringLiteral("string id"));
            in_.acceptPunct(",");
            const QString text = string(QStringLiteral("a string after string id %1").arg(id));
            if (!script_.strings.emplace(id, text).second) {
                in_.context().fail(idToken.file, idToken.line,
                                   QStringLiteral("duplicate string id %1").arg(id));
            }
        }
        endBlock();
    }

    // Style names as written, e.g. WS_CHILD | NOT WS_VISIBLE | 0x10.
    QStringList styleList() {
        QStringList styles;
        do {
            const bool negated = in_.acceptKeyword("NOT");
            const Token& token = in_.peek();
            if (token.kind != TokenKind::Identifier && token.kind != TokenKind::Number)
                in_.expected(QStringLiteral("a style name"));
            in_.next();
            styles.append(negated ? QStringLiteral("NOT ") + token.text : token.text);
        } while (in_.acceptPunct("|"));
        return styles;
    }

    void checkNewId(bool inserted, const Token& idToken, const char* kind, int id) {
        if (!inserted) {
            in_.context().fail(
                idToken.file, idToken.line,
                QStringLiteral("duplicate %1 id %2").arg(QLatin1String(kind)).arg(id));
        }
    }

    void dialog(int id, bool extended, const Token& idToken) {
        DialogTemplate dialog;
        dialog.id = id;
        dialog.extended = extended;
        skipMemoryFlags();
        dialog.x = number(QStringLiteral("the dialog's x"));
        in_.expectPunct(",");
        dialog.y = number(QStringLiteral("the dialog's y"));
        in_.expectPunct(",");
        dialog.width = number(QStringLiteral("the dialog's width"));
        in_.expectPunct(",");
        dialog.height = number(QStringLiteral("the dialog's height"));
        if (extended && in_.acceptPunct(","))
            dialog.helpId = number(QStringLiteral("a help id"));
        dialogStatements(dialog);
        beginBlock();
        while (!atBlockEnd()) {
            if (in_.atEnd())
                in_.expected(QStringLiteral("END"));
            dialog.controls.push_back(control(extended));
        }
        endBlock();
        checkNewId(script_.dialogs.emplace(id, std::move(dialog)).second, idToken, "dialog", id);
    }

    void dialogStatements(DialogTemplate& dialog) {
        for (;;) {
            if (in_.acceptKeyword("STYLE")) {
                dialog.styles = styleList();
            } else if (in_.acceptKeyword("EXSTYLE")) {
                dialog.exStyles = styleList();
            } else if (in_.acceptKeyword("CAPTION")) {
                dialog.caption = string(QStringLiteral("the caption in quotes"));
            } else if (in_.acceptKeyword("FONT")) {
                dialog.fontSize = number(QStringLiteral("a font size"));
                in_.expectPunct(",");
                dialog.fontName = string(QStringLiteral("a font name in quotes"));
                if (in_.acceptPunct(",")) {
                    if (!dialog.extended)
                        in_.failHere(
                            QStringLiteral("FONT weight, italic and charset need DIALOGEX"));
                    dialog.fontWeight = number(QStringLiteral("a font weight"));
                    if (in_.acceptPunct(",")) {
                        dialog.fontItalic = number(QStringLiteral("the italic flag")) != 0;
                        if (in_.acceptPunct(","))
                            dialog.fontCharset = number(QStringLiteral("a character set"));
                    }
                }
            } else if (in_.acceptKeyword("MENU")) {
                dialog.menuId = resourceId(QStringLiteral("menu id"));
            } else if (in_.acceptKeyword("CLASS")) {
                if (in_.peek().kind == TokenKind::String)
                    dialog.className = string(QString());
                else
                    dialog.className = QString::number(number(QStringLiteral("a class")));
            } else if (in_.acceptKeyword("LANGUAGE")) {
                languageArguments();
            } else if (in_.acceptKeyword("CHARACTERISTICS") || in_.acceptKeyword("VERSION")) {
                in_.expression();
            } else {
                return;
            }
        }
    }

    void position(ControlTemplate& control) {
        control.x = number(QStringLiteral("the control's x"));
        in_.expectPunct(",");
        control.y = number(QStringLiteral("the control's y"));
        in_.expectPunct(",");
        control.width = number(QStringLiteral("the control's width"));
        in_.expectPunct(",");
        control.height = number(QStringLiteral("the control's height"));
    }

    int controlId() {
        const Token& first = in_.peek();
        const int id = number(QStringLiteral("a control id"));
        if (id < -1 || id > kMaxResourceId) {
            in_.context().fail(first.file, first.line,
                               QStringLiteral("control id %1 is out of range (-1 to %2)")
                                   .arg(id)
                                   .arg(kMaxResourceId));
        }
        return id;
    }

    // [, style [, exstyle [, helpid]]] after the position of a control.
    void optionalStylesAndHelp(ControlTemplate& control, bool extended, bool stylesAllowed) {
        if (stylesAllowed && in_.acceptPunct(",")) {
            control.styles = styleList();
        } else if (stylesAllowed) {
            return;
        }
        if (!in_.acceptPunct(","))
            return;
        control.exStyles = styleList();
        if (extended && in_.acceptPunct(","))
            control.helpId = number(QStringLiteral("a help id"));
    }

    ControlTemplate control(bool extended) {
        const Token& statement = in_.peek();
        if (statement.kind != TokenKind::Identifier)
            in_.expected(QStringLiteral("a control statement or END"));
        ControlTemplate control;
        control.statement = statement.text.toUpper();
        if (textControls().contains(control.statement)) {
            in_.next();
            control.text = string(QStringLiteral("the control's text in quotes"));
            in_.expectPunct(",");
            control.id = controlId();
            in_.expectPunct(",");
            position(control);
            optionalStylesAndHelp(control, extended, true);
        } else if (plainControls().contains(control.statement)) {
            in_.next();
            control.id = controlId();
            in_.expectPunct(",");
            position(control);
            optionalStylesAndHelp(control, extended, true);
        } else if (control.statement == u"CONTROL") {
            in_.next();
            control.text = string(QStringLiteral("the control's text in quotes"));
            in_.expectPunct(",");
            control.id = controlId();
            in_.expectPunct(",");
            if (in_.peek().kind == TokenKind::String)
                control.className = string(QString());
            else if (in_.peek().kind == TokenKind::Identifier)
                control.className = in_.next().text;
            else
                in_.expected(QStringLiteral("a window class"));
            in_.expectPunct(",");
            control.styles = styleList();
            in_.expectPunct(",");
            position(control);
            optionalStylesAndHelp(control, extended, false);
        } else {
            in_.expected(QStringLiteral("a control statement or END"));
        }
        return control;
    }

    void menu(int id, const Token& idToken) {
        MenuTemplate menu;
        menu.id = id;
        skipMemoryFlags();
        menu.items = menuBlock();
        checkNewId(script_.menus.emplace(id, std::move(menu)).second, idToken, "menu", id);
    }

    std::vector<MenuItem> menuBlock(int depth = 0) {
        if (depth > kMaxMenuDepth)
            in_.failHere(QStringLiteral("menu nested too deeply"));
        std::vector<MenuItem> items;
        beginBlock();
        while (!atBlockEnd()) {
            if (in_.acceptKeyword("MENUITEM")) {
                items.push_back(menuItem());
            } else if (in_.acceptKeyword("POPUP")) {
                MenuItem popup;
                popup.isPopup = true;
                popup.text = string(QStringLiteral("the popup's text in quotes"));
                menuOptions(popup);
                popup.children = menuBlock(depth + 1);
                items.push_back(std::move(popup));
            } else {
                in_.expected(QStringLiteral("MENUITEM, POPUP or END"));
            }
        }
        endBlock();
        return items;
    }

    MenuItem menuItem() {
        MenuItem item;
        if (in_.acceptKeyword("SEPARATOR")) {
            item.separator = true;
            return item;
        }
        item.text = string(QStringLiteral("the menu item's text in quotes or SEPARATOR"));
        in_.expectPunct(",");
        item.id = resourceId(QStringLiteral("command id"));
        menuOptions(item);
        return item;
    }

    void menuOptions(MenuItem& item) {
        for (;;) {
            const size_t ahead = in_.isPunct(",") ? 1 : 0;
            const auto isOption = [&](const char* name) { return in_.isKeyword(name, ahead); };
            if (isOption("CHECKED")) {
                item.checked = true;
            } else if (isOption("GRAYED")) {
                item.enabled = false;
                item.grayed = true;
            } else if (isOption("INACTIVE")) {
                item.enabled = false;
            } else if (!(isOption("MENUBARBREAK") || isOption("MENUBREAK") || isOption("HELP"))) {
                if (ahead == 1) {
                    in_.next();
                    in_.expected(QStringLiteral("CHECKED, GRAYED or INACTIVE"));
                }
                return;
            }
            if (ahead == 1)
                in_.next();
            in_.next();
        }
    }

    void fileResource(int id) {
        FileResource file;
        file.id = id;
        file.type = in_.next().text;
        skipMemoryFlags();
        file.fileName = string(QStringLiteral("a file name in quotes after %1").arg(file.type));
        script_.files[{file.type.toUpper(), id}] = file;
    }

    static constexpr int kMaxMenuDepth = 32;

    TokenCursor in_;
    ResourceScript& script_;
};

void predefineSymbols(Context& context) {
    // What the platform's headers give every script.
    static const std::pair<const char*, qint64> predefined[] = {
        {"IDOK", 1},  {"IDCANCEL", 2}, {"IDABORT", 3}, {"IDRETRY", 4}, {"IDIGNORE", 5},
        {"IDYES", 6}, {"IDNO", 7},     {"IDCLOSE", 8}, {"IDHELP", 9},  {"IDC_STATIC", -1}};
    for (const auto& [name, value] : predefined)
        context.symbols[QLatin1String(name)] = Symbol{value, -1, 0};
}

} // namespace

ResourceParseResult parseResourceScript(const QString& text, const QString& fileName,
                                        const IncludeResolver& resolveInclude) {
    ResourceParseResult result;
    Context context;
    context.files.append(fileName);
    context.includeChain.append(fileName);
    context.textRead = text.size();
    context.resolveInclude = resolveInclude;
    predefineSymbols(context);
    try {
        std::vector<Token> tokens;
        Lexer(context, tokens, 0).run(text, 0);
        const int lastLine = int(text.count(u'\n')) + 1;
        tokens.push_back(Token{TokenKind::End, {}, 0, lastLine, 0});
        Parser(tokens, context, result.script).run();
    } catch (const Failure& failure) {
        result.error = failure.error;
    }
    for (const auto& [name, symbol] : context.symbols) {
        if (symbol.value && symbol.file >= 0)
            result.script.symbols[name] = int(*symbol.value);
    }
    return result;
}

std::optional<QString> decodeScriptText(const QByteArray& bytes) {
    const bool utf16 = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    QStringDecoder decoder(utf16 ? QStringDecoder::Utf16 : QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text;
}

IncludeResolver includeSearchPath(const QStringList& directories) {
    return [directories](const QString& includeName, const QString&,
                         QString* displayName) -> std::optional<QString> {
        for (const QString& directory : directories) {
            QFile file(QDir(directory).filePath(includeName));
            if (!file.open(QIODevice::ReadOnly))
                continue;
            if (displayName)
                *displayName = QFileInfo(includeName).fileName();
            return decodeScriptText(file.readAll());
        }
        return std::nullopt;
    };
}

ResourceParseResult parseResourceFile(const QString& path, const QStringList& includeDirectories) {
    const QString displayName = QFileInfo(path).fileName();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ResourceParseResult result;
        result.error = ResourceParseError{displayName, 0, QStringLiteral("cannot open the file")};
        return result;
    }
    const std::optional<QString> text = decodeScriptText(file.readAll());
    if (!text) {
        ResourceParseResult result;
        result.error =
            ResourceParseError{displayName, 0, QStringLiteral("the file is not valid UTF-8 text")};
        return result;
    }
    QStringList directories{QFileInfo(path).absolutePath()};
    directories += includeDirectories;
    ResourceParseResult result =
        parseResourceScript(*text, displayName, includeSearchPath(directories));
    result.script.folder = directories.front();
    return result;
}

} // namespace tessaly

#include "framework/resources/resource_parser.h"
#include "tests/testkit/qstring_printer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

namespace {

using tessaly::parseResourceScript;
using tessaly::ResourceParseResult;

// Resolves includes from a fixed set of in-memory files.
tessaly::IncludeResolver memoryFiles(std::map<QString, QString> files) {
    return [files](const QString& name, const QString&, QString* displayName) {
        const auto found = files.find(name);
        if (found == files.end())
            return std::optional<QString>();
        *displayName = name;
        return std::optional<QString>(found->second);
    };
}

ResourceParseResult parse(const QString& text, std::map<QString, QString> includes = {}) {
    return parseResourceScript(text, QStringLiteral("t.rc"), memoryFiles(std::move(includes)));
}

TEST(ResourceParser, StringLiteralsDecodeTheirEscapes) {
    struct Case {
        const char* literal;
        QString expected;
    };
    const Case cases[] = {
        {R"("plain")", QStringLiteral("plain")},
        {R"("")", QString()},
        {R"("line\nbreak")", QStringLiteral("line\nbreak")},
        {R"("tab\there")", QStringLiteral("tab\there")},
        {R"("back\\slash")", QStringLiteral("back\\slash")},
        {R"("say ""hi""")", QStringLiteral("say \"hi\"")},
        {R"("say \"hi\"")", QStringLiteral("say \"hi\"")},
        {R"("%s and %d, 100%")", QStringLiteral("%s and %d, 100%")},
        {R"("&File")", QStringLiteral("&File")},
        {R"("\x41\x2022")", QStringLiteral("A\u2022")},
        {R"("\101")", QStringLiteral("A")},
        {R"(L"wide")", QStringLiteral("wide")},
        {R"("joined " "text")", QStringLiteral("joined text")},
        {R"("// not a comment /* either */")", QStringLiteral("// not a comment /* either */")},
        {R"(" padded ")", QStringLiteral(" padded ")},
        {"\"caf\u00e9 \u2022\"", QStringLiteral("caf\u00e9 \u2022")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.literal);
        const auto result =
            parse(QStringLiteral("STRINGTABLE BEGIN 1 %1 END").arg(QString::fromUtf8(c.literal)));
        ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
        EXPECT_EQ(result.script.string(1), c.expected);
    }
}

TEST(ResourceParser, StringIdsTakeNumbersSymbolsAndArithmetic) {
    const auto result = parse(QStringLiteral(R"(
        #define IDS_BASE 10000
        #define IDS_NEXT (IDS_BASE + 1)
        #define IDS_HEX 0x2710
        STRINGTABLE
        {
            IDS_BASE        "base"
            IDS_NEXT,       "next"
            IDS_BASE+2      "sum"
            0xE000          "hex"
            IDS_HEX * 2     "product"
            57345L          "suffix"
        }
    )"));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    const std::map<int, QString> expected{{10000, "base"}, {10001, "next"},    {10002, "sum"},
                                          {57344, "hex"},  {20000, "product"}, {57345, "suffix"}};
    EXPECT_EQ(result.script.strings, expected);
    EXPECT_EQ(result.script.symbols.at(QStringLiteral("IDS_NEXT")), 10001);
}

TEST(ResourceParser, CommentsBlocksAndKeywordCase) {
    const auto result = parse(QStringLiteral(R"(
        // a line comment
        stringtable discardable /* flags are accepted */
        begin
            1 "one" // after an entry
            /* spanning
               lines */ 2 "two"
        end
    )"));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    EXPECT_EQ(result.script.string(1), QStringLiteral("one"));
    EXPECT_EQ(result.script.string(2), QStringLiteral("two"));
}

TEST(ResourceParser, ErrorsNameFileLineAndWhatWasExpected) {
    struct Case {
        const char* name;
        QString text;
        std::map<QString, QString> includes;
        QString expected; // the whole message
    };
    const Case cases[] = {
        {"stringtable without end",
         "STRINGTABLE\nBEGIN\n1 \"a\"\n",
         {},
         "t.rc:4: expected END, found end of file"},
        {"entry without id",
         "STRINGTABLE\nBEGIN\n\"a\"\nEND",
         {},
         "t.rc:3: expected string id, found \"a\""},
        {"entry without text",
         "STRINGTABLE BEGIN\n1\n2 \"b\"\nEND",
         {},
         "t.rc:3: expected a string after string id 1, found 2"},
        {"unknown symbol",
         "STRINGTABLE BEGIN\nIDS_MISSING \"a\"\nEND",
         {},
         "t.rc:2: unknown symbol IDS_MISSING"},
        {"duplicate id",
         "STRINGTABLE BEGIN\n1 \"a\"\n1 \"b\"\nEND",
         {},
         "t.rc:3: duplicate string id 1"},
        {"id out of range",
         "STRINGTABLE BEGIN\n70000 \"a\"\nEND",
         {},
         "t.rc:2: string id 70000 is out of range (0 to 65535)"},
        {"unterminated string",
         "STRINGTABLE BEGIN\n1 \"open\nEND",
         {},
         "t.rc:2: unterminated string"},
        {"unknown escape",
         "STRINGTABLE BEGIN\n1 \"C:\\windows\"\nEND",
         {},
         "t.rc:2: unknown escape sequence \\w in string"},
        {"unterminated comment",
         "STRINGTABLE BEGIN\n/* never closed\n1 \"a\"\nEND",
         {},
         "t.rc:2: unterminated comment"},
        {"bad number", "STRINGTABLE BEGIN\n12ab \"a\"\nEND", {}, "t.rc:2: bad number 12ab"},
        {"stray character",
         "STRINGTABLE BEGIN\n1 \"a\" ;\nEND",
         {},
         "t.rc:2: unexpected character ';'"},
        {"division by zero", "STRINGTABLE BEGIN\n10/0 \"a\"\nEND", {}, "t.rc:2: division by zero"},
        {"text at top level",
         "\"loose\"",
         {},
         "t.rc:1: expected a resource id or STRINGTABLE, found \"loose\""},
        {"unknown resource type",
         "1 WINDOW\nBEGIN END",
         {},
         "t.rc:1: expected a resource type (DIALOG, DIALOGEX, MENU, BITMAP, ...), found WINDOW"},
        {"menu item without comma",
         "1 MENU\nBEGIN\nMENUITEM \"Open\" 100\nEND",
         {},
         "t.rc:3: expected ',', found 100"},
        {"unknown menu option",
         "1 MENU\nBEGIN\nMENUITEM \"Open\", 100, BOLD\nEND",
         {},
         "t.rc:3: expected CHECKED, GRAYED or INACTIVE, found BOLD"},
        {"popup without end",
         "1 MENU\nBEGIN\nPOPUP \"File\"\nBEGIN\nMENUITEM \"Open\", 1\nEND\n",
         {},
         "t.rc:7: expected MENUITEM, POPUP or END, found end of file"},
        {"dialog without begin",
         "1 DIALOG 0, 0, 10, 10\nCAPTION \"x\"\nLTEXT \"a\", 1, 0, 0, 5, 5",
         {},
         "t.rc:3: expected BEGIN, found LTEXT"},
        {"dialog size missing",
         "1 DIALOG 0, 0, 10\nBEGIN\nEND",
         {},
         "t.rc:2: expected ',', found BEGIN"},
        {"unknown control",
         "1 DIALOG 0, 0, 10, 10\nBEGIN\nBUTTONX \"a\", 1, 0, 0, 5, 5\nEND",
         {},
         "t.rc:3: expected a control statement or END, found BUTTONX"},
        {"control without height",
         "1 DIALOG 0, 0, 10, 10\nBEGIN\nEDITTEXT 5, 0, 0, 5\nEND",
         {},
         "t.rc:4: expected ',', found END"},
        {"font extras need dialogex",
         "1 DIALOG 0, 0, 10, 10\nFONT 8, \"Tahoma\", 700\nBEGIN\nEND",
         {},
         "t.rc:2: FONT weight, italic and charset need DIALOGEX"},
        {"duplicate menu", "1 MENU BEGIN END\n1 MENU BEGIN END", {}, "t.rc:2: duplicate menu id 1"},
        {"missing include",
         "#include \"absent.h\"",
         {},
         "t.rc:1: cannot open include file \"absent.h\""},
        {"error inside include",
         "#include \"res.h\"\nSTRINGTABLE BEGIN END",
         {{"res.h", "#define A 1\n#define B 2 +\n#define C (A\nSTRINGTABLE BEGIN\nC \"x\"\nEND"}},
         "res.h:5: symbol C (defined at res.h:3) is not a number"},
        {"unsupported directive", "#if 1\n#endif", {}, "t.rc:1: unsupported directive #if"},
        {"endif without if", "#endif", {}, "t.rc:1: #endif without #if"},
        {"overflow",
         "STRINGTABLE BEGIN\n0xFFFFFFFF * 0xFFFFFFFF * 0xFFFFFFFF \"a\"\nEND",
         {},
         "t.rc:2: number too large"},
        {"runaway parentheses",
         "STRINGTABLE BEGIN\n" + QString(5000, u'(') + "1",
         {},
         "t.rc:2: expression nested too deeply"},
        {"runaway popups",
         "1 MENU BEGIN\n" + QString("POPUP \"p\" BEGIN\n").repeated(100),
         {},
         "t.rc:34: menu nested too deeply"},
        {"ifdef without endif", "#ifdef X\n1 MENU BEGIN END", {}, "t.rc:2: #if without #endif"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = parse(c.text, c.includes);
        ASSERT_FALSE(result.ok());
        EXPECT_EQ(result.error->toString(), c.expected);
    }
}

TEST(ResourceParser, DialogsKeepPositionsStylesAndControls) {
    const auto result = parse(QStringLiteral(R"(
        #define IDD_MAIN 10008
        #define IDC_LIST 10032
        IDD_MAIN DIALOGEX DISCARDABLE 0, 0, 145, 156, 77
        STYLE WS_POPUP | WS_VISIBLE | NOT WS_BORDER
        EXSTYLE 0x80000000L
        CAPTION "SMS ""main"""
        FONT 8, "Tahoma", 700, 1, 0x1
        MENU 10012
        CLASS "MainClass"
        BEGIN
            LTEXT           "From:", 12047, 2, 3, 20, 9
            RTEXT           "right", IDC_STATIC, 30, 3, 20, 9, SS_NOTIFY
            CTEXT           "centre", -1, 60, 3, 20, 9
            DEFPUSHBUTTON   "OK", IDOK, 0, 140, 40, 14
            PUSHBUTTON      "Cancel", IDCANCEL, 50, 140, 40, 14, WS_DISABLED | NOT WS_TABSTOP
            EDITTEXT        10013, 5, 20, 30, 12, ES_NUMBER | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE
            COMBOBOX        10075, 37, 15, 90, 75, CBS_DROPDOWNLIST | WS_VSCROLL
            LISTBOX         12050, 0, 40, 60, 40, LBS_SORT, 0, 99
            GROUPBOX        "Choose Date", 12003, 0, 0, 115, 45
            AUTOCHECKBOX    "Show progress dialog", 10057, 5, 60, 100, 10
            AUTORADIOBUTTON "horizontally", 12045, 5, 70, 100, 10, WS_GROUP
            CONTROL         "", IDC_LIST, "SysListView32", LVS_REPORT | LVS_SINGLESEL | WS_TABSTOP, 0, 15, 145, 100
            CONTROL         "", 12008, "msctls_progress32", WS_BORDER, 5, 80, 100, 8
            CONTROL         "", 10061, "msctls_updown32", UDS_SETBUDDYINT | UDS_ALIGNRIGHT, 40, 20, 10, 12
            CONTROL         "", 10002, "SysDateTimePick32", DTS_RIGHTALIGN, 5, 5, 100, 14, WS_EX_CLIENTEDGE, 5
            CONTROL         "Use same SCA", 10053, Button, BS_AUTOCHECKBOX | WS_TABSTOP, 29, 48, 90, 9
        END
    )"));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    const tessaly::DialogTemplate& dialog = result.script.dialogs.at(10008);
    EXPECT_TRUE(dialog.extended);
    EXPECT_EQ(dialog.width, 145);
    EXPECT_EQ(dialog.height, 156);
    EXPECT_EQ(dialog.helpId, 77);
    EXPECT_EQ(dialog.styles, QStringList({"WS_POPUP", "WS_VISIBLE", "NOT WS_BORDER"}));
    EXPECT_EQ(dialog.exStyles, QStringList({"0x80000000L"}));
    EXPECT_EQ(dialog.caption, QStringLiteral("SMS \"main\""));
    EXPECT_EQ(dialog.fontName, QStringLiteral("Tahoma"));
    EXPECT_EQ(dialog.fontSize, 8);
    EXPECT_EQ(dialog.fontWeight, 700);
    EXPECT_TRUE(dialog.fontItalic);
    EXPECT_EQ(dialog.fontCharset, 1);
    EXPECT_EQ(dialog.menuId, 10012);
    EXPECT_EQ(dialog.className, QStringLiteral("MainClass"));

    struct Expected {
        const char* statement;
        const char* className;
        const char* text;
        int id;
        int x, y, width, height;
        QStringList styles;
        QStringList exStyles;
    };
    const Expected expected[] = {
        {"LTEXT", "", "From:", 12047, 2, 3, 20, 9, {}, {}},
        {"RTEXT", "", "right", -1, 30, 3, 20, 9, {"SS_NOTIFY"}, {}},
        {"CTEXT", "", "centre", -1, 60, 3, 20, 9, {}, {}},
        {"DEFPUSHBUTTON", "", "OK", 1, 0, 140, 40, 14, {}, {}},
        {"PUSHBUTTON", "", "Cancel", 2, 50, 140, 40, 14, {"WS_DISABLED", "NOT WS_TABSTOP"}, {}},
        {"EDITTEXT",
         "",
         "",
         10013,
         5,
         20,
         30,
         12,
         {"ES_NUMBER", "ES_AUTOHSCROLL"},
         {"WS_EX_CLIENTEDGE"}},
        {"COMBOBOX", "", "", 10075, 37, 15, 90, 75, {"CBS_DROPDOWNLIST", "WS_VSCROLL"}, {}},
        {"LISTBOX", "", "", 12050, 0, 40, 60, 40, {"LBS_SORT"}, {"0"}},
        {"GROUPBOX", "", "Choose Date", 12003, 0, 0, 115, 45, {}, {}},
        {"AUTOCHECKBOX", "", "Show progress dialog", 10057, 5, 60, 100, 10, {}, {}},
        {"AUTORADIOBUTTON", "", "horizontally", 12045, 5, 70, 100, 10, {"WS_GROUP"}, {}},
        {"CONTROL",
         "SysListView32",
         "",
         10032,
         0,
         15,
         145,
         100,
         {"LVS_REPORT", "LVS_SINGLESEL", "WS_TABSTOP"},
         {}},
        {"CONTROL", "msctls_progress32", "", 12008, 5, 80, 100, 8, {"WS_BORDER"}, {}},
        {"CONTROL",
         "msctls_updown32",
         "",
         10061,
         40,
         20,
         10,
         12,
         {"UDS_SETBUDDYINT", "UDS_ALIGNRIGHT"},
         {}},
        {"CONTROL",
         "SysDateTimePick32",
         "",
         10002,
         5,
         5,
         100,
         14,
         {"DTS_RIGHTALIGN"},
         {"WS_EX_CLIENTEDGE"}},
        {"CONTROL",
         "Button",
         "Use same SCA",
         10053,
         29,
         48,
         90,
         9,
         {"BS_AUTOCHECKBOX", "WS_TABSTOP"},
         {}},
    };
    ASSERT_EQ(dialog.controls.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        const Expected& e = expected[i];
        const tessaly::ControlTemplate& c = dialog.controls[i];
        SCOPED_TRACE(e.text);
        EXPECT_EQ(c.statement, QLatin1String(e.statement));
        EXPECT_EQ(c.className, QLatin1String(e.className));
        EXPECT_EQ(c.text, QString::fromUtf8(e.text));
        EXPECT_EQ(c.id, e.id);
        EXPECT_EQ(QList<int>({c.x, c.y, c.width, c.height}),
                  QList<int>({e.x, e.y, e.width, e.height}));
        EXPECT_EQ(c.styles, e.styles);
        EXPECT_EQ(c.exStyles, e.exStyles);
    }
    EXPECT_EQ(dialog.controls[7].helpId, 99);
    EXPECT_EQ(dialog.controls[14].helpId, 5);
    ASSERT_NE(dialog.control(10075), nullptr);
    EXPECT_EQ(dialog.control(10075)->statement, QStringLiteral("COMBOBOX"));
    EXPECT_EQ(dialog.control(4242), nullptr);
}

TEST(ResourceParser, PlainDialogWithoutStatements) {
    const auto result = parse(QStringLiteral("12000 DIALOG 10, 20, 115, 63\n{\n}"));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    const tessaly::DialogTemplate& dialog = result.script.dialogs.at(12000);
    EXPECT_FALSE(dialog.extended);
    EXPECT_EQ(dialog.x, 10);
    EXPECT_EQ(dialog.y, 20);
    EXPECT_TRUE(dialog.controls.empty());
    EXPECT_TRUE(dialog.caption.isEmpty());
}

TEST(ResourceParser, MenusNestWithFlags) {
    const auto result = parse(QStringLiteral(R"(
        10012 MENU
        BEGIN
            MENUITEM "&New",                10237
            POPUP "Tools", GRAYED
            BEGIN
                MENUITEM "Info",            10273, CHECKED
                MENUITEM SEPARATOR
                MENUITEM "Options",         10274, GRAYED, CHECKED
                MENUITEM "Later",           10275 INACTIVE
                POPUP "More"
                BEGIN
                END
            END
        END
    )"));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    const tessaly::MenuTemplate& menu = result.script.menus.at(10012);
    ASSERT_EQ(menu.items.size(), 2u);
    EXPECT_EQ(menu.items[0].text, QStringLiteral("&New"));
    EXPECT_EQ(menu.items[0].id, 10237);
    EXPECT_FALSE(menu.items[0].isPopup);

    const tessaly::MenuItem& tools = menu.items[1];
    EXPECT_TRUE(tools.isPopup);
    EXPECT_FALSE(tools.enabled);
    ASSERT_EQ(tools.children.size(), 5u);

    struct Expected {
        const char* text;
        int id;
        bool separator, checked, enabled, grayed, popup;
    };
    const Expected expected[] = {
        {"Info", 10273, false, true, true, false, false},
        {"", 0, true, false, true, false, false},
        {"Options", 10274, false, true, false, true, false},
        {"Later", 10275, false, false, false, false, false},
        {"More", 0, false, false, true, false, true},
    };
    for (size_t i = 0; i < std::size(expected); ++i) {
        const tessaly::MenuItem& item = tools.children[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(item.text, QLatin1String(expected[i].text));
        EXPECT_EQ(item.id, expected[i].id);
        EXPECT_EQ(item.separator, expected[i].separator);
        EXPECT_EQ(item.checked, expected[i].checked);
        EXPECT_EQ(item.enabled, expected[i].enabled);
        EXPECT_EQ(item.grayed, expected[i].grayed);
        EXPECT_EQ(item.isPopup, expected[i].popup);
    }
}

TEST(ResourceParser, PreprocessorConditionsAndSharedHeader) {
    const auto result = parse(QStringLiteral(R"(
        #include "resource.h"
        #include "resource.h"
        #ifdef HAVE_EXTRA
        STRINGTABLE BEGIN 3 "skipped: \q is never read" END
        #else
        STRINGTABLE BEGIN IDS_TWO "two" END
        #endif
        #ifndef HAVE_EXTRA
        #undef IDS_ONE
        #define IDS_ONE 11
        #endif
        STRINGTABLE BEGIN IDS_ONE "one" END
        20 BITMAP "send.bmp"
        21 PNG DISCARDABLE "header.png"
    )"),
                              {{"resource.h", "#pragma once\n// shared with C++\n"
                                              "#define IDS_ONE 1\n#define IDS_TWO 2\n"
                                              "#define APP_NAME L\"SMS\"\n#define MAX(a, b) a\n"}});
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    const std::map<int, QString> expected{{2, "two"}, {11, "one"}};
    EXPECT_EQ(result.script.strings, expected);
    EXPECT_EQ(result.script.symbols.count(QStringLiteral("APP_NAME")), 0u);
    EXPECT_EQ(result.script.files.at({QStringLiteral("BITMAP"), 20}).fileName,
              QStringLiteral("send.bmp"));
    EXPECT_EQ(result.script.files.at({QStringLiteral("PNG"), 21}).fileName,
              QStringLiteral("header.png"));
}

TEST(ResourceParser, FileIsReadWithItsIncludesBesideIt) {
    QTemporaryDir folder;
    auto write = [&](const QString& name, const QByteArray& bytes) {
        QFile file(QDir(folder.path()).filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    write(QStringLiteral("ids.h"), "#define IDS_HELLO 10000\r\n");
    write(QStringLiteral("app.rc"), "\xEF\xBB\xBF#include \"ids.h\"\r\nSTRINGTABLE\r\nBEGIN\r\n"
                                    "IDS_HELLO \"Gr\xC3\xBC\xC3\x9F"
                                    "e\"\r\nEND\r\n");
    write(QStringLiteral("broken.rc"), "STRINGTABLE\r\nBEGIN\r\n1 \"a\"\r\n2 \"b\"\r\n");
    write(QStringLiteral("latin1.rc"), "STRINGTABLE BEGIN 1 \"Gr\xFC\xDF"
                                       "e\" END");

    const auto good = tessaly::parseResourceFile(QDir(folder.path()).filePath("app.rc"));
    ASSERT_TRUE(good.ok()) << qPrintable(good.error->toString());
    EXPECT_EQ(good.script.string(10000), QStringLiteral("Gr\u00fc\u00dfe"));

    const auto broken = tessaly::parseResourceFile(QDir(folder.path()).filePath("broken.rc"));
    ASSERT_FALSE(broken.ok());
    EXPECT_EQ(broken.error->toString(),
              QStringLiteral("broken.rc:5: expected END, found end of file"));

    const auto latin1 = tessaly::parseResourceFile(QDir(folder.path()).filePath("latin1.rc"));
    ASSERT_FALSE(latin1.ok());
    EXPECT_EQ(latin1.error->toString(),
              QStringLiteral("latin1.rc:0: the file is not valid UTF-8 text"));

    const auto missing = tessaly::parseResourceFile(QDir(folder.path()).filePath("none.rc"));
    ASSERT_FALSE(missing.ok());
    EXPECT_EQ(missing.error->toString(), QStringLiteral("none.rc:0: cannot open the file"));
}

TEST(ResourceParser, IncludeCyclesAndRunawayIncludesAreRefused) {
    // A file of 2 MB that includes the next one twice, eight deep: 2^8 copies if nothing
    // stopped it.
    std::map<QString, QString> doubling;
    const QString padding = QStringLiteral("// ") + QString(2 * 1024 * 1024, u'x') + u'\n';
    for (int level = 0; level < 8; ++level) {
        const QString next = QStringLiteral("d%1.h").arg(level + 1);
        doubling[QStringLiteral("d%1.h").arg(level)] =
            padding + QStringLiteral("#include \"%1\"\n#include \"%1\"\n").arg(next);
    }
    doubling[QStringLiteral("d8.h")] = QStringLiteral("#define LAST 1\n");
    const struct {
        const char* name;
        QString script;
        std::map<QString, QString> files;
        const char* error; // empty: parses
    } cases[] = {
        {"itself",
         QStringLiteral("#include \"self.h\""),
         {{"self.h", "#include \"self.h\"\n"}},
         "#include cycle: \"self.h\" includes itself"},
        {"through another",
         QStringLiteral("#include \"a.h\""),
         {{"a.h", "#include \"b.h\"\n"}, {"b.h", "#include \"a.h\"\n"}},
         "#include cycle: \"a.h\" includes itself through t.rc → a.h → b.h"},
        {"the same file twice, side by side",
         QStringLiteral("#include \"a.h\"\n#include \"a.h\""),
         {{"a.h", "#define A 1\n"}},
         ""},
        {"doubling", QStringLiteral("#include \"d0.h\""), doubling, "come to more than 16 MB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = parse(c.script, c.files);
        if (*c.error == 0) {
            EXPECT_TRUE(result.ok()) << qPrintable(result.error->toString());
            continue;
        }
        ASSERT_FALSE(result.ok());
        EXPECT_TRUE(result.error->message.contains(QString::fromUtf8(c.error)))
            << qPrintable(result.error->toString());
    }
}

} // namespace

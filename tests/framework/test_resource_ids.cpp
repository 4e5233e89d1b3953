#include "framework/resources/resource_ids.h"
#include "framework/resources/resource_parser.h"

#include "tests/testkit/qstring_printer.h"

#include <gtest/gtest.h>

namespace {

const char* const kReference = R"(
#define IDS_HELLO 100
#define IDS_BYE 101
#define IDR_MENU_MAIN 200
#define IDM_NEW 300
#define IDM_OPEN 301
#define IDD_MAIN 400
#define IDC_NAME 500
STRINGTABLE
BEGIN
    IDS_HELLO "Hello"
    IDS_BYE "Bye"
END
IDR_MENU_MAIN MENU
BEGIN
    MENUITEM "New", IDM_NEW
    POPUP "More"
    BEGIN
        MENUITEM "Open", IDM_OPEN
    END
END
IDD_MAIN DIALOG 0, 0, 100, 50
BEGIN
    LTEXT "Name:", -1, 0, 0, 30, 9
    EDITTEXT IDC_NAME, 32, 0, 60, 12
END
)";

tessaly::ResourceScript parse(const QString& text) {
    tessaly::ResourceParseResult result = tessaly::parseResourceScript(text, "test.rc");
    EXPECT_TRUE(result.ok()) << qPrintable(result.error->toString());
    return result.script;
}

TEST(ResourceIds, DifferencesAreNamedByKindAndSymbol) {
    const struct {
        const char* what;
        const char* from;
        const char* to;
        QStringList differences;
    } cases[] = {
        {"texts differ only", "\"Hello\"", "\"Hallo\"", {}},
        {"statics may differ in number",
         "LTEXT \"Name:\", -1, 0, 0, 30, 9",
         "LTEXT \"Name\", -1, 0, 0, 30, 9\n LTEXT \":\", -1, 0, 0, 30, 9",
         {}},
        {"string missing", "    IDS_BYE \"Bye\"\n", "", {"string 101 (IDS_BYE) missing"}},
        {"string extra",
         "    IDS_BYE \"Bye\"\n",
         "    IDS_BYE \"Bye\"\n    102 \"More\"\n",
         {"string 102 extra"}},
        {"nested command renumbered",
         "\"Open\", IDM_OPEN",
         "\"Open\", 302",
         {"menu 200 (IDR_MENU_MAIN): command 301 (IDM_OPEN) missing",
          "menu 200 (IDR_MENU_MAIN): command 302 extra"}},
        {"menu missing",
         "IDR_MENU_MAIN MENU",
         "201 MENU",
         {"menu 200 (IDR_MENU_MAIN) missing", "menu 201 extra"}},
        {"control missing",
         "    EDITTEXT IDC_NAME, 32, 0, 60, 12\n",
         "",
         {"dialog 400 (IDD_MAIN): control 500 (IDC_NAME) missing"}},
        {"dialog renumbered",
         "IDD_MAIN DIALOG",
         "401 DIALOG",
         {"dialog 400 (IDD_MAIN) missing", "dialog 401 extra"}},
    };
    const tessaly::ResourceScript reference = parse(kReference);
    for (const auto& c : cases) {
        QString translated = QString::fromUtf8(kReference);
        ASSERT_TRUE(translated.contains(QLatin1String(c.from))) << c.what;
        translated.replace(QLatin1String(c.from), QLatin1String(c.to));
        EXPECT_EQ(tessaly::compareResourceIds(reference, parse(translated)), c.differences)
            << c.what;
    }
}

} // namespace

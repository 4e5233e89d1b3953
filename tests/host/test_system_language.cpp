#include "host/system_language.h"

#include "framework/datadir.h"
#include "util/suite_registry.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(SystemLanguage, TheLocaleBecomesTheLanguageIndexTheModuleReads) {
    QTemporaryDir dataDir;
    ASSERT_TRUE(dataDir.isValid());
    tessaly::setDataDirectory(dataDir.path());
    const struct {
        const char* locale;
        DWORD lcid;
        int index;
    } cases[] = {
        {"de_DE.UTF-8", 0x0407, 1}, {"de-AT", 0x0407, 1},
        {"es", 0x0c0a, 2},          {"it_IT", 0x0410, 3},
        {"fr_CA", 0x040c, 4},       {"zh_TW.UTF-8", 0x0404, 5},
        {"zh_CN", 0x0804, 6},       {"en_GB", 0x0409, 0},
        {"C", 0x0409, 0},           {"", 0x0409, 0},
        {"nl_NL", 0x0413, 0},       {"xx", 0x0409, 0},
        {"qps", 0x0501, 7},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(tessaly::host::lcidForLanguage(QLatin1String(c.locale)), c.lcid) << c.locale;
        ASSERT_TRUE(tessaly::host::recordSystemLanguage(QLatin1String(c.locale)));
        EXPECT_EQ(systemLanguageIndex(), c.index) << c.locale;
    }
    tessaly::setDataDirectory(QString());
}

} // namespace

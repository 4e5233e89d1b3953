#include "registry_test_support.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <sqlite3.h>

#include <cstring>

using registry_test::RegistryTest;
using registry_test::wide;

namespace {

QString hivePath(const QString& dir) {
    return dir + QStringLiteral("/registry-current-user.db");
}

} // namespace

TEST_F(RegistryTest, NamesMatchInAnyCaseAndKeepTheirOwn) {
    struct Case {
        const char16_t* stored;
        const char16_t* asked;
        bool same;
    };
    const Case cases[] = {
        {u"Templates", u"TEMPLATES", true},
        {u"Ärger", u"äRGER", true},
        {u"ΣΟΦΊΑ", u"σοφία", true},
        {u"Ωmega", u"ωMEGA", true},
        {u"Straße", u"STRASSE", false},
        {u"Key", u"Key ", false},
        {u"a_b", u"A_B", true},
        {u"Ärger", u"Arger", false},
    };
    for (const Case& c : cases) {
        const QString stored = QString::fromUtf16(c.stored);
        const QString asked = QString::fromUtf16(c.asked);
        SCOPED_TRACE(asked.toStdString());
        HKEY parent = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Case\\") + stored);
        ASSERT_EQ(setString(parent, stored, QStringLiteral("x")), ERROR_SUCCESS);

        HKEY reopened = nullptr;
        EXPECT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("software\\CASE\\") + asked, &reopened),
                  c.same ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(queryString(parent, asked).isNull(), !c.same);
        RegCloseKey(reopened);

        // Writing under the other spelling overwrites, and the first spelling stays.
        ASSERT_EQ(setString(parent, asked, QStringLiteral("y")), ERROR_SUCCESS);
        const auto names = valueNames(parent);
        ASSERT_FALSE(names.empty());
        EXPECT_EQ(names.front(), stored);
        EXPECT_EQ(names.size(), c.same ? 1u : 2u);

        HKEY caseKey = nullptr;
        ASSERT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software\\Case"), &caseKey),
                  ERROR_SUCCESS);
        const auto keys = subKeyNames(caseKey);
        EXPECT_NE(std::find(keys.begin(), keys.end(), stored), keys.end());
        RegCloseKey(caseKey);
        RegCloseKey(parent);
    }
}

TEST_F(RegistryTest, ValuesEnumerateInCreationOrder) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Order"));
    for (const char16_t* name : {u"zeta", u"Alpha", u"mid", u"01"})
        ASSERT_EQ(setString(key, QString::fromUtf16(name), QStringLiteral("v")), ERROR_SUCCESS);
    // Overwriting keeps the place; deleting and writing again moves to the end.
    ASSERT_EQ(setString(key, QStringLiteral("ALPHA"), QStringLiteral("w")), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteValueW(key, u"zeta"), ERROR_SUCCESS);
    ASSERT_EQ(setString(key, QStringLiteral("Zeta"), QStringLiteral("v")), ERROR_SUCCESS);

    const std::vector<QString> expected = {QStringLiteral("Alpha"), QStringLiteral("mid"),
                                           QStringLiteral("01"), QStringLiteral("Zeta")};
    EXPECT_EQ(valueNames(key), expected);
    EXPECT_EQ(queryString(key, QStringLiteral("alpha")), QStringLiteral("w"));
    RegCloseKey(key);
}

TEST_F(RegistryTest, SubKeysEnumerateInCaseInsensitiveOrder) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Keys"));
    // Upper-cased comparison puts '_' (0x5F) after the letters and 'Ä' after ASCII.
    for (const char16_t* name : {u"beta", u"_under", u"Ärger", u"Alpha", u"gamma", u"alpha2"})
        RegCloseKey(create(key, QString::fromUtf16(name)));
    const std::vector<QString> expected = {QStringLiteral("Alpha"),  QStringLiteral("alpha2"),
                                           QStringLiteral("beta"),   QStringLiteral("gamma"),
                                           QStringLiteral("_under"), QString::fromUtf16(u"Ärger")};
    EXPECT_EQ(subKeyNames(key), expected);
    RegCloseKey(key);
}

TEST_F(RegistryTest, CreateMakesTheWholePathAndReportsWhatItDid) {
    DWORD disposition = 0;
    HKEY deep = create(HKEY_CURRENT_USER, QStringLiteral("Software\\A\\B\\C\\"), &disposition);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    HKEY again = create(HKEY_CURRENT_USER, QStringLiteral("software\\a\\b\\c"), &disposition);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
    ASSERT_EQ(setString(deep, QStringLiteral("v"), QStringLiteral("1")), ERROR_SUCCESS);
    EXPECT_EQ(queryString(again, QStringLiteral("V")), QStringLiteral("1"));
    RegCloseKey(deep);
    RegCloseKey(again);

    HKEY machine = nullptr;
    EXPECT_EQ(open(HKEY_LOCAL_MACHINE, QStringLiteral("Software\\A"), &machine),
              ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryTest, DeleteRules) {
    struct Case {
        const char* what;
        const char16_t* path;
        LONG expected;
        bool goneAfterwards;
    };
    const Case cases[] = {
        {"key with subkeys", u"Software\\Del\\Parent", ERROR_ACCESS_DENIED, false},
        {"leaf with values", u"Software\\Del\\Parent\\Leaf", ERROR_SUCCESS, true},
        {"missing key", u"Software\\Del\\Nothing", ERROR_FILE_NOT_FOUND, true},
        {"other case", u"SOFTWARE\\DEL\\EMPTY", ERROR_SUCCESS, true},
        {"root of the hive", u"", ERROR_ACCESS_DENIED, false},
        {"empty name inside path", u"Software\\\\Del", ERROR_INVALID_PARAMETER, false},
    };
    HKEY leaf = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Del\\Parent\\Leaf"));
    ASSERT_EQ(setString(leaf, QStringLiteral("v"), QStringLiteral("1")), ERROR_SUCCESS);
    RegCloseKey(leaf);
    RegCloseKey(create(HKEY_CURRENT_USER, QStringLiteral("Software\\Del\\Empty")));

    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, c.path), c.expected);
        HKEY key = nullptr;
        const LONG opened = RegOpenKeyExW(HKEY_CURRENT_USER, c.path, 0, 0, &key);
        EXPECT_EQ(opened == ERROR_FILE_NOT_FOUND, c.goneAfterwards);
        RegCloseKey(key);
    }
    // The parent goes once its last subkey is gone, values and all.
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Software\\Del\\Parent"), ERROR_SUCCESS);

    HKEY del = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Del"));
    EXPECT_EQ(RegDeleteValueW(del, u"absent"), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(subKeyNames(del).empty());
    RegCloseKey(del);
}

TEST_F(RegistryTest, HandleToDeletedKeyReportsItAndRecreationIsANewKey) {
    HKEY doomed = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Doomed"));
    ASSERT_EQ(setString(doomed, QStringLiteral("v"), QStringLiteral("old")), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Software\\Doomed"), ERROR_SUCCESS);
    HKEY recreated = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Doomed"));

    DWORD size = 0;
    WCHAR name[16];
    DWORD length = 16;
    HKEY child = nullptr;
    DWORD count = 0;
    EXPECT_EQ(RegQueryValueExW(doomed, u"v", nullptr, nullptr, nullptr, &size), ERROR_KEY_DELETED);
    EXPECT_EQ(setString(doomed, QStringLiteral("v"), QStringLiteral("x")), ERROR_KEY_DELETED);
    EXPECT_EQ(RegEnumValueW(doomed, 0, name, &length, nullptr, nullptr, nullptr, nullptr),
              ERROR_KEY_DELETED);
    EXPECT_EQ(RegEnumKeyExW(doomed, 0, name, &length, nullptr, nullptr, nullptr, nullptr),
              ERROR_KEY_DELETED);
    EXPECT_EQ(RegQueryInfoKeyW(doomed, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr),
              ERROR_KEY_DELETED);
    EXPECT_EQ(RegCreateKeyExW(doomed, u"Child", 0, nullptr, 0, 0, nullptr, &child, nullptr),
              ERROR_KEY_DELETED);
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(RegCloseKey(doomed), ERROR_SUCCESS);

    EXPECT_TRUE(queryString(recreated, QStringLiteral("v")).isNull());
    RegCloseKey(recreated);
}

TEST_F(RegistryTest, HandlesThatAreNotOpenAreRefused) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Handles"));
    ASSERT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    DWORD size = 0;
    for (HKEY bad : {key, HKEY(nullptr)}) {
        EXPECT_EQ(RegQueryValueExW(bad, u"v", nullptr, nullptr, nullptr, &size),
                  ERROR_INVALID_HANDLE);
        EXPECT_EQ(RegCloseKey(bad), ERROR_INVALID_HANDLE);
    }
    // The predefined roots are never closed.
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
    HKEY reopened = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software\\Handles"), &reopened),
              ERROR_SUCCESS);
    RegCloseKey(reopened);
}

TEST_F(RegistryTest, QuerySizesFollowThePlatform) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Sizes"));
    ASSERT_EQ(setString(key, QStringLiteral("abc"), QStringLiteral("abc")), ERROR_SUCCESS);
    ASSERT_EQ(setString(key, QStringLiteral("empty"), QString()), ERROR_SUCCESS);
    const DWORD number = 0x12345678;
    ASSERT_EQ(
        RegSetValueExW(key, u"dword", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4),
        ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExW(key, u"blob", 0, REG_BINARY, nullptr, 0), ERROR_SUCCESS);

    struct Case {
        const char16_t* name;
        bool withBuffer;
        DWORD bufferSize;
        LONG expected;
        DWORD sizeAfter;
        DWORD type;
    };
    const Case cases[] = {
        {u"abc", false, 0, ERROR_SUCCESS, 8, REG_SZ},
        {u"abc", true, 7, ERROR_MORE_DATA, 8, REG_SZ},
        {u"abc", true, 8, ERROR_SUCCESS, 8, REG_SZ},
        {u"abc", true, 64, ERROR_SUCCESS, 8, REG_SZ},
        {u"empty", true, 64, ERROR_SUCCESS, 2, REG_SZ},
        {u"dword", true, 3, ERROR_MORE_DATA, 4, REG_DWORD},
        {u"DWORD", true, 4, ERROR_SUCCESS, 4, REG_DWORD},
        {u"blob", true, 0, ERROR_SUCCESS, 0, REG_BINARY},
        {u"absent", true, 64, ERROR_FILE_NOT_FOUND, 64, 99},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(QString::fromUtf16(c.name).toStdString() + " " + std::to_string(c.bufferSize));
        BYTE buffer[64];
        std::memset(buffer, 0xAA, sizeof buffer);
        DWORD size = c.bufferSize;
        DWORD type = 99;
        EXPECT_EQ(
            RegQueryValueExW(key, c.name, nullptr, &type, c.withBuffer ? buffer : nullptr, &size),
            c.expected);
        EXPECT_EQ(size, c.sizeAfter);
        EXPECT_EQ(type, c.type);
        if (c.expected == ERROR_MORE_DATA) {
            EXPECT_EQ(buffer[0], 0xAA) << "a short buffer is left alone";
        }
    }
    DWORD readBack = 0;
    DWORD size = 4;
    ASSERT_EQ(RegQueryValueExW(key, u"dword", nullptr, nullptr, reinterpret_cast<LPBYTE>(&readBack),
                               &size),
              ERROR_SUCCESS);
    EXPECT_EQ(readBack, number);

    // A DWORD is four bytes, and data needs a size to go with it.
    EXPECT_EQ(
        RegSetValueExW(key, u"short", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 2),
        ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegSetValueExW(key, u"null", 0, REG_SZ, nullptr, 4), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExW(key, u"abc", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(key, u"abc", nullptr, nullptr, reinterpret_cast<LPBYTE>(&readBack),
                               nullptr),
              ERROR_INVALID_PARAMETER);
    RegCloseKey(key);
}

TEST_F(RegistryTest, EnumerationNeedsRoomForTheTerminatingZero) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Long"));
    const QString fits(199, QLatin1Char('a'));
    const QString tooLong(200, QLatin1Char('b'));
    RegCloseKey(create(key, fits));
    RegCloseKey(create(key, tooLong));
    ASSERT_EQ(setString(key, tooLong, QStringLiteral("data")), ERROR_SUCCESS);

    WCHAR name[200];
    DWORD length = 200;
    ASSERT_EQ(RegEnumKeyExW(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(length, 199u);
    EXPECT_EQ(QString::fromUtf16(name), fits);
    length = 200;
    EXPECT_EQ(RegEnumKeyExW(key, 1, name, &length, nullptr, nullptr, nullptr, nullptr),
              ERROR_MORE_DATA);
    length = 200;
    EXPECT_EQ(RegEnumKeyExW(key, 2, name, &length, nullptr, nullptr, nullptr, nullptr),
              ERROR_NO_MORE_ITEMS);

    length = 200;
    DWORD type = 0;
    DWORD size = 0;
    EXPECT_EQ(RegEnumValueW(key, 0, name, &length, nullptr, &type, nullptr, &size),
              ERROR_MORE_DATA);
    WCHAR longName[201];
    BYTE data[4];
    length = 201;
    size = sizeof data;
    EXPECT_EQ(RegEnumValueW(key, 0, longName, &length, nullptr, &type, data, &size),
              ERROR_MORE_DATA);
    EXPECT_EQ(size, 10u) << "the size needed for \"data\" and its zero";
    EXPECT_EQ(QString::fromUtf16(longName), tooLong);
    EXPECT_EQ(type, REG_SZ);

    HKEY unused = nullptr;
    EXPECT_EQ(RegCreateKeyExW(key, wide(QString(256, QLatin1Char('c'))), 0, nullptr, 0, 0, nullptr,
                              &unused, nullptr),
              ERROR_INVALID_PARAMETER);
    RegCloseKey(key);
}

TEST_F(RegistryTest, InfoCountsSubKeysAndValues) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Info"));
    RegCloseKey(create(key, QStringLiteral("Short")));
    RegCloseKey(create(key, QStringLiteral("Longer\\Nested")));
    ASSERT_EQ(setString(key, QStringLiteral("name"), QStringLiteral("four")), ERROR_SUCCESS);
    ASSERT_EQ(setString(key, QStringLiteral("longest"), QStringLiteral("x")), ERROR_SUCCESS);

    DWORD subKeys = 99, maxSubKey = 99, values = 99, maxValueName = 99, maxValue = 99;
    FILETIME written;
    ASSERT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subKeys, &maxSubKey, nullptr,
                               &values, &maxValueName, &maxValue, nullptr, &written),
              ERROR_SUCCESS);
    EXPECT_EQ(subKeys, 2u);
    EXPECT_EQ(maxSubKey, 6u);
    EXPECT_EQ(values, 2u);
    EXPECT_EQ(maxValueName, 7u);
    EXPECT_EQ(maxValue, 10u);
    EXPECT_GT(fileTimeToUInt64(written), 0u);
    RegCloseKey(key);
}

TEST_F(RegistryTest, EverythingSurvivesReopeningTheFiles) {
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Persist"));
    for (const char16_t* name : {u"c", u"A", u"b"})
        ASSERT_EQ(
            setString(key, QString::fromUtf16(name), QString::fromUtf16(name) + QLatin1Char('!')),
            ERROR_SUCCESS);
    RegCloseKey(create(key, QStringLiteral("Sub")));
    RegCloseKey(key);
    HKEY machine = create(HKEY_LOCAL_MACHINE, QStringLiteral("Software\\Persist"));
    ASSERT_EQ(setString(machine, QStringLiteral("m"), QStringLiteral("machine")), ERROR_SUCCESS);
    RegCloseKey(machine);

    tessaly::releaseRegistryHives();

    for (const char* file : {"registry-current-user.db", "registry-local-machine.db"}) {
        const QFileInfo info(dataDir.filePath(QString::fromLatin1(file)));
        EXPECT_TRUE(info.exists()) << file;
        EXPECT_EQ(info.permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther |
                                        QFileDevice::WriteGroup | QFileDevice::WriteOther),
                  QFileDevice::Permissions())
            << file;
    }
    ASSERT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("SOFTWARE\\persist"), &key), ERROR_SUCCESS);
    const std::vector<QString> order = {QStringLiteral("c"), QStringLiteral("A"),
                                        QStringLiteral("b")};
    EXPECT_EQ(valueNames(key), order);
    EXPECT_EQ(queryString(key, QStringLiteral("a")), QStringLiteral("A!"));
    EXPECT_EQ(subKeyNames(key), std::vector<QString>{QStringLiteral("Sub")});
    EXPECT_TRUE(queryString(key, QStringLiteral("m")).isNull());
    RegCloseKey(key);
    ASSERT_EQ(open(HKEY_LOCAL_MACHINE, QStringLiteral("Software\\Persist"), &machine),
              ERROR_SUCCESS);
    EXPECT_EQ(queryString(machine, QStringLiteral("m")), QStringLiteral("machine"));
    RegCloseKey(machine);
}

TEST_F(RegistryTest, HivesFollowTheDataDirectory) {
    HKEY first = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Where"));
    ASSERT_EQ(setString(first, QStringLiteral("dir"), QStringLiteral("first")), ERROR_SUCCESS);

    QTemporaryDir other;
    tessaly::setDataDirectory(other.path());
    HKEY key = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software\\Where"), &key),
              ERROR_FILE_NOT_FOUND);
    // A handle opened before the change still reaches its own file.
    EXPECT_EQ(queryString(first, QStringLiteral("dir")), QStringLiteral("first"));
    HKEY second = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Where"));
    ASSERT_EQ(setString(second, QStringLiteral("dir"), QStringLiteral("second")), ERROR_SUCCESS);
    RegCloseKey(second);

    tessaly::setDataDirectory(dataDir.path());
    ASSERT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software\\Where"), &key), ERROR_SUCCESS);
    EXPECT_EQ(queryString(key, QStringLiteral("dir")), QStringLiteral("first"));
    RegCloseKey(key);
    RegCloseKey(first);
}

namespace {

void runSql(const QString& path, const char* sql) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(db);
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void writeAll(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

} // namespace

TEST_F(RegistryTest, DamagedFileIsReportedAndLeftAlone) {
    struct Case {
        const char* what;
        std::function<void(const QString&)> damage;
    };
    const Case cases[] = {
        {"text instead of a database",
         [](const QString& path) { writeAll(path, QByteArray(3000, 'x')); }},
        {"cut after the header",
         [](const QString& path) { writeAll(path, readAll(path).left(100)); }},
        {"page overwritten",
         [](const QString& path) {
             QByteArray bytes = readAll(path);
             ASSERT_GT(bytes.size(), 3 * 4096);
             bytes.replace(4096, 4096, QByteArray(4096, '\x5a'));
             writeAll(path, bytes);
         }},
        {"another program's database",
         [](const QString& path) {
             QFile::remove(path);
             runSql(path, "CREATE TABLE notes(text)");
         }},
        {"newer format", [](const QString& path) { runSql(path, "PRAGMA user_version = 7"); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        QTemporaryDir dir;
        tessaly::setDataDirectory(dir.path());
        HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Damage"));
        for (int i = 0; i < 200; ++i)
            ASSERT_EQ(setString(key, QString::number(i), QString(40, QLatin1Char('v'))),
                      ERROR_SUCCESS);
        RegCloseKey(key);
        tessaly::releaseRegistryHives();

        const QString path = hivePath(dir.path());
        c.damage(path);
        const QByteArray damaged = readAll(path);

        EXPECT_TRUE(tessaly::openRegistryHives().contains(path));

        EXPECT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software\\Damage"), &key), ERROR_BADDB);
        EXPECT_EQ(key, nullptr);
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"Software\\New", 0, nullptr, 0, 0, nullptr,
                                  &key, nullptr),
                  ERROR_BADDB);
        EXPECT_TRUE(tessaly::registryLastError().contains(path))
            << tessaly::registryLastError().toStdString();
        EXPECT_EQ(readAll(path), damaged) << "the damaged file must stay as it was";

        // The other hive is a file of its own and keeps working.
        HKEY machine = create(HKEY_LOCAL_MACHINE, QStringLiteral("Software"));
        EXPECT_NE(machine, nullptr);
        RegCloseKey(machine);
        tessaly::releaseRegistryHives();
    }
    tessaly::setDataDirectory(dataDir.path());
}

TEST_F(RegistryTest, FileThatCannotBeOpenedIsReported) {
    const QString path = hivePath(dataDir.path());
    ASSERT_TRUE(QDir().mkdir(path));
    HKEY key = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software"), &key), ERROR_CANTOPEN);
    EXPECT_TRUE(tessaly::registryLastError().contains(path));
    EXPECT_TRUE(QFileInfo(path).isDir());
}

TEST_F(RegistryTest, WritesSurviveAProcessKilledRightAfterThem) {
    // The first write comes from this process, so the file is shared while the writer works.
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Crash"));
    ASSERT_EQ(setString(key, QStringLiteral("before"), QStringLiteral("here")), ERROR_SUCCESS);

    constexpr int writes = 20;
    QProcess writer;
    writer.start(QStringLiteral(REGISTRY_WRITER_PATH),
                 {dataDir.path(), QStringLiteral("Software\\Crash"), QString::number(writes)});
    ASSERT_TRUE(writer.waitForFinished(30000));
    EXPECT_EQ(writer.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(writer.readAllStandardOutput().trimmed(), QByteArray::number(writes));

    for (int i = 0; i < writes; ++i)
        EXPECT_EQ(queryString(key, QStringLiteral("value%1").arg(i)),
                  QStringLiteral("written %1").arg(i));
    RegCloseKey(key);

    // Also once nothing holds the file open any more.
    tessaly::releaseRegistryHives();
    ASSERT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software\\Crash"), &key), ERROR_SUCCESS);
    EXPECT_EQ(queryString(key, QStringLiteral("value%1").arg(writes - 1)),
              QStringLiteral("written %1").arg(writes - 1));
    RegCloseKey(key);
}

namespace {

// Values of the hive as another connection sees them: only what has been committed.
int committedValues(const QString& path) {
    sqlite3* db = nullptr;
    int count = -1;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
        SQLITE_OK) {
        sqlite3_stmt* query = nullptr;
        if (sqlite3_prepare_v2(db, "SELECT count(*) FROM vals", -1, &query, nullptr) == SQLITE_OK &&
            sqlite3_step(query) == SQLITE_ROW)
            count = sqlite3_column_int(query, 0);
        sqlite3_finalize(query);
    }
    sqlite3_close(db);
    return count;
}

} // namespace

TEST_F(RegistryTest, BatchedWritesAreCommittedTogetherAtTheEnd) {
    const QString path = hivePath(dataDir.path());
    ASSERT_TRUE(tessaly::openRegistryHives().isEmpty());
    {
        const tessaly::RegistryWriteBatch batch;
        HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Batch"));
        {
            const tessaly::RegistryWriteBatch inner; // nests: only the outermost commits
            for (int i = 0; i < 50; ++i)
                ASSERT_EQ(setString(key, QString::number(i), QStringLiteral("v")), ERROR_SUCCESS);
        }
        // A refused call inside the batch undoes only itself.
        EXPECT_EQ(RegDeleteValueW(key, u"missing"), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(queryString(key, QStringLiteral("49")), QStringLiteral("v"));
        EXPECT_EQ(committedValues(path), 0);
        RegCloseKey(key);
    }
    EXPECT_EQ(committedValues(path), 50);

    // Outside a batch every write is committed on its own again.
    HKEY key = create(HKEY_CURRENT_USER, QStringLiteral("Software\\Batch"));
    ASSERT_EQ(setString(key, QStringLiteral("after"), QStringLiteral("v")), ERROR_SUCCESS);
    EXPECT_EQ(committedValues(path), 51);
    RegCloseKey(key);
}

// The wrapper's own rules, checked against a recording stand-in for the registry functions: this
// binary defines them itself, and an executable's definitions take precedence over the
// framework library's. The stand-in lets every call fail on demand, which a real registry
// cannot be made to do.

#include "util/registry_key.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

struct FakeRegistry {
    std::vector<std::string> calls;
    std::map<std::string, LONG> failWith; // call name -> result code
    std::vector<std::u16string> subkeys;  // what RegEnumKeyExW lists, for any key
    std::map<std::u16string, std::vector<BYTE>> values;
    std::set<HKEY> openHandles;
    std::uintptr_t lastHandle = 0x1000;
    DWORD lastSetType = 0;
    std::vector<BYTE> lastSetData;
    std::u16string lastPath;

    LONG enter(const char* name) {
        calls.emplace_back(name);
        const auto found = failWith.find(name);
        return found == failWith.end() ? ERROR_SUCCESS : found->second;
    }
    HKEY openHandle() {
        const HKEY handle = reinterpret_cast<HKEY>(++lastHandle);
        openHandles.insert(handle);
        return handle;
    }
};

FakeRegistry* fake = nullptr;

} // namespace

LONG RegOpenKeyExW(HKEY, LPCWSTR subKey, DWORD, REGSAM, PHKEY result) {
    const LONG rc = fake->enter("open");
    fake->lastPath = subKey;
    if (rc == ERROR_SUCCESS)
        *result = fake->openHandle();
    return rc;
}

LONG RegCreateKeyExW(HKEY, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM, void*, PHKEY result,
                     LPDWORD disposition) {
    const LONG rc = fake->enter("create");
    fake->lastPath = subKey;
    if (rc == ERROR_SUCCESS) {
        *result = fake->openHandle();
        if (disposition)
            *disposition = REG_CREATED_NEW_KEY;
    }
    return rc;
}

LONG RegQueryValueExW(HKEY, LPCWSTR valueName, LPDWORD, LPDWORD type, LPBYTE data,
                      LPDWORD dataSize) {
    LONG rc = fake->enter("query");
    const auto found = fake->values.find(valueName);
    if (rc != ERROR_SUCCESS)
        return rc;
    if (found == fake->values.end())
        return ERROR_FILE_NOT_FOUND;
    const DWORD size = DWORD(found->second.size());
    if (data && size > *dataSize)
        rc = ERROR_MORE_DATA;
    else if (data)
        std::copy(found->second.begin(), found->second.end(), data);
    *dataSize = size;
    if (type)
        *type = REG_BINARY;
    return rc;
}

LONG RegSetValueExW(HKEY, LPCWSTR, DWORD, DWORD type, const BYTE* data, DWORD dataSize) {
    fake->lastSetType = type;
    fake->lastSetData.assign(data, data + dataSize);
    return fake->enter("set");
}

LONG RegEnumKeyExW(HKEY, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD, LPWSTR, LPDWORD,
                   FILETIME*) {
    const LONG rc = fake->enter("enum");
    if (rc != ERROR_SUCCESS)
        return rc;
    if (index >= fake->subkeys.size())
        return ERROR_NO_MORE_ITEMS;
    const std::u16string& subkey = fake->subkeys[index];
    if (subkey.size() + 1 > *nameLength)
        return ERROR_MORE_DATA;
    std::copy(subkey.c_str(), subkey.c_str() + subkey.size() + 1, name);
    *nameLength = DWORD(subkey.size());
    return ERROR_SUCCESS;
}

LONG RegQueryInfoKeyW(HKEY, LPWSTR, LPDWORD, LPDWORD, LPDWORD subKeyCount, LPDWORD, LPDWORD,
                      LPDWORD valueCount, LPDWORD, LPDWORD, LPDWORD, FILETIME*) {
    const LONG rc = fake->enter("info");
    if (rc == ERROR_SUCCESS) {
        *subKeyCount = DWORD(fake->subkeys.size());
        *valueCount = DWORD(fake->values.size());
    }
    return rc;
}

LONG RegDeleteValueW(HKEY, LPCWSTR) {
    return fake->enter("deleteValue");
}

LONG RegDeleteKeyW(HKEY, LPCWSTR) {
    return fake->enter("deleteKey");
}

LONG RegCloseKey(HKEY key) {
    const LONG rc = fake->enter("close");
    if (rc == ERROR_SUCCESS) {
        EXPECT_EQ(fake->openHandles.erase(key), 1u) << "closed a handle that was not open";
    }
    return rc;
}

namespace {

using Calls = std::vector<std::string>;

class RegistryKeyTest : public ::testing::Test {
protected:
    void SetUp() override { fake = &registry; }
    void TearDown() override {
        EXPECT_TRUE(registry.openHandles.empty()) << "a key handle was leaked";
        fake = nullptr;
    }

    RegistryKey openKey() {
        RegistryKey key;
        key.open(HKEY_LOCAL_MACHINE, u"Software");
        registry.calls.clear();
        return key;
    }

    FakeRegistry registry;
};

TEST_F(RegistryKeyTest, AKeyThatIsNotOpenNeverReachesTheRegistry) {
    registry.failWith["open"] = ERROR_FILE_NOT_FOUND;
    RegistryKey key;
    key.open(HKEY_LOCAL_MACHINE, u"Missing");
    EXPECT_FALSE(key.isOpen());
    registry.calls.clear();

    BYTE buffer[8] = {};
    DWORD size = sizeof buffer;
    EXPECT_EQ(key.queryDword(u"LCID"), 0u);
    EXPECT_EQ(key.queryValue(u"Key", buffer, size), 0u);
    EXPECT_FALSE(key.setValue(u"v", buffer, 4, REG_BINARY));
    EXPECT_FALSE(key.setString(u"v", u"text"));
    EXPECT_FALSE(key.setDword(u"v", 1));
    EXPECT_FALSE(key.isEmpty());
    EXPECT_FALSE(key.deleteValue(u"v"));
    EXPECT_FALSE(key.deleteSubkey(u"v"));
    EXPECT_FALSE(key.close());

    RegistryKey child;
    child.open(key, u"Sub");
    child.create(key, u"Sub");
    EXPECT_FALSE(child.isOpen());

    RegistrySubkeyIterator subkeys(key);
    EXPECT_FALSE(subkeys.next());
    EXPECT_EQ(registry.calls, Calls{});
}

TEST_F(RegistryKeyTest, FailedCallsAreQuiet) {
    RegistryKey key = openKey();
    registry.values[u"Short"] = {1, 2};
    registry.values[u"Long"] = {1, 2, 3, 4, 5};
    const struct {
        const char* failing;
        std::function<bool()> quietOutcome;
    } cases[] = {
        {"query", [&] { return key.queryDword(u"Short") == 0; }},
        {"query",
         [&] {
             DWORD size = 2;
             BYTE data[2];
             return key.queryValue(u"Short", data, size) == 0;
         }},
        {"set", [&] { return !key.setDword(u"v", 1); }},
        {"set", [&] { return !key.setString(u"v", u"x"); }},
        {"info", [&] { return !key.isEmpty(); }},
        {"deleteValue", [&] { return !key.deleteValue(u"v"); }},
        {"deleteKey", [&] { return !key.deleteSubkey(u"v"); }},
    };
    for (const auto& c : cases) {
        registry.failWith = {{c.failing, ERROR_ACCESS_DENIED}};
        EXPECT_TRUE(c.quietOutcome()) << c.failing;
    }
    registry.failWith.clear();
    EXPECT_EQ(key.queryDword(u"Missing"), 0u);
    EXPECT_EQ(key.queryDword(u"Long"), 0u) << "a value that does not fit is no number";
    EXPECT_TRUE(key.isOpen());
}

TEST_F(RegistryKeyTest, StringsAndNumbersAreStoredWithTheirTypeAndSize) {
    RegistryKey key = openKey();
    EXPECT_TRUE(key.setString(u"Name", u"Ab"));
    EXPECT_EQ(registry.lastSetType, REG_SZ);
    EXPECT_EQ(registry.lastSetData, (std::vector<BYTE>{'A', 0, 'b', 0, 0, 0}));
    EXPECT_TRUE(key.setString(u"Name", u""));
    EXPECT_EQ(registry.lastSetData, (std::vector<BYTE>{0, 0}));
    EXPECT_TRUE(key.setDword(u"Count", 0x01020304));
    EXPECT_EQ(registry.lastSetType, REG_DWORD);
    EXPECT_EQ(registry.lastSetData, (std::vector<BYTE>{4, 3, 2, 1}));
}

TEST_F(RegistryKeyTest, CloseTwiceAndARefusedClose) {
    RegistryKey key = openKey();
    registry.failWith["close"] = ERROR_INVALID_HANDLE;
    EXPECT_FALSE(key.close());
    EXPECT_TRUE(key.isOpen()) << "a refused close keeps the handle";
    registry.failWith.clear();
    EXPECT_TRUE(key.close());
    EXPECT_FALSE(key.isOpen());
    EXPECT_FALSE(key.close());
    EXPECT_EQ(registry.calls, (Calls{"close", "close"}));
}

TEST_F(RegistryKeyTest, ReopeningClosesTheOldHandleAndMovesTransferIt) {
    RegistryKey key = openKey();
    key.open(HKEY_LOCAL_MACHINE, u"Other");
    EXPECT_EQ(registry.calls, (Calls{"close", "open"}));

    RegistryKey moved = std::move(key);
    EXPECT_FALSE(key.isOpen());
    EXPECT_TRUE(moved.isOpen());

    registry.failWith["open"] = ERROR_FILE_NOT_FOUND;
    moved.open(moved, u"Missing");
    EXPECT_FALSE(moved.isOpen());
    EXPECT_EQ(registry.lastPath, u"Missing");
}

TEST_F(RegistryKeyTest, IteratorOpensEachSubkeyInTurn) {
    registry.subkeys = {u"Drv0", u"Drv1", u"Drv2"};
    RegistryKey parent = openKey();
    RegistrySubkeyIterator subkeys(parent);
    std::vector<std::u16string> visited;
    while (subkeys.next()) {
        EXPECT_TRUE(subkeys.current().isOpen());
        visited.push_back(registry.lastPath);
        EXPECT_EQ(registry.openHandles.size(), 2u) << "the previous subkey stays open";
    }
    EXPECT_EQ(visited, (std::vector<std::u16string>{u"Drv0", u"Drv1", u"Drv2"}));
    EXPECT_FALSE(subkeys.current().isOpen());
    EXPECT_EQ(subkeys.nextIndex(), 4u);
}

TEST_F(RegistryKeyTest, IteratorEndsOnTheFirstFailure) {
    const struct {
        const char* name;
        std::vector<std::u16string> subkeys;
        std::map<std::string, LONG> failWith;
        int opened;
        DWORD nextIndex;
    } cases[] = {
        {"no subkeys", {}, {}, 0, 1},
        {"name of 199 units fits", {std::u16string(199, u'k'), u"b"}, {}, 2, 3},
        {"name of 200 units ends the walk", {u"a", std::u16string(200, u'k'), u"b"}, {}, 1, 2},
        {"enumeration refused", {u"a"}, {{"enum", ERROR_ACCESS_DENIED}}, 0, 1},
        // An open that fails ends this walk too; the position has still moved on.
        {"subkey will not open", {u"a", u"b"}, {{"open", ERROR_ACCESS_DENIED}}, 0, 1},
    };
    for (const auto& c : cases) {
        registry.subkeys = c.subkeys;
        RegistryKey parent = openKey();
        registry.failWith = c.failWith;
        RegistrySubkeyIterator subkeys(parent);
        int opened = 0;
        while (subkeys.next())
            ++opened;
        EXPECT_EQ(opened, c.opened) << c.name;
        EXPECT_EQ(subkeys.nextIndex(), c.nextIndex) << c.name;
        registry.failWith.clear();
    }
}

} // namespace

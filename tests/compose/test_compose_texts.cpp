// The composer's pure rules: the To: field's characters, counting and cutting, and the
// favourites list in the profile.

#include "compose/favourites.h"
#include "compose/recipients.h"
#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "tests/testkit/qstring_printer.h"
#include "tests/testkit/temporary_data_directory.h"

#include <gtest/gtest.h>

namespace {

using namespace tessaly::sms;

TEST(Recipients, AllowedCharacters) {
    EXPECT_TRUE(isValidRecipientText(u""));
    EXPECT_TRUE(isValidRecipientText(u"+49 (171) 555-12#3*4/5,0172"));
    EXPECT_FALSE(isValidRecipientText(u"0171a"));
    EXPECT_FALSE(isValidRecipientText(u"0171;0172"));
    EXPECT_FALSE(isValidRecipientText(u"0171\u00a0555"));
}

TEST(Recipients, Counting) {
    const struct {
        const char16_t* to;
        int count;
    } cases[] = {
        {u"", 0},      {u"123", 1},  {u"123,456", 2},        {u"123,,456", 2},
        {u",123,", 1}, {u" , ,", 0}, {u"0171 555, 0172", 2}, {u"1 , 2 , 3", 3},
    };
    for (const auto& c : cases)
        EXPECT_EQ(countRecipients(c.to), c.count) << QString::fromUtf16(c.to).toStdString();
}

TEST(Recipients, TokensComeLastFirstWithoutBlanks) {
    EXPECT_EQ(recipientTokensLastFirst(u"123, 456"), (QStringList{"456", "123"}));
    EXPECT_EQ(recipientTokensLastFirst(u"0171 555 12,,0172 9"),
              (QStringList{"01729", "017155512"}));
    EXPECT_EQ(recipientTokensLastFirst(u", ,"), QStringList());
    EXPECT_EQ(firstRecipient(QStringLiteral("0171 5,0172")), QStringLiteral("0171 5"));
}

TEST(Recipients, ProvisionalFolderKeepsTheOldCuttingRule) {
    EXPECT_EQ(provisionalRecipients(QStringLiteral("1,2,3")), (QStringList{"2,3", "3", "3"}));
    EXPECT_EQ(provisionalRecipients(QStringLiteral("123")), QStringList{"123"});
}

class FavouritesTest : public ::testing::Test {
protected:
    void SetUp() override {
        tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        tessaly::profile::setProfileName(QStringLiteral("SMS"));
    }
    void TearDown() override { tessaly::releaseRegistryHives(); }

    static void fill(int count) {
        for (int i = count; i >= 1; --i)
            Favourites::remember(QStringLiteral("0170%1").arg(i));
    }
    static QString count() {
        return tessaly::profile::getProfileString(Favourites::kSection, QStringLiteral("Values"));
    }

    tessaly::testkit::TemporaryDataDirectory dataDirectory;
};

TEST_F(FavouritesTest, NewOnesGoFirstAndTheTenthDrops) {
    fill(10);
    ASSERT_EQ(count(), QStringLiteral("10"));
    ASSERT_EQ(Favourites::entries().front(), QStringLiteral("01701"));
    Favourites::remember(QStringLiteral("0999"));
    const QStringList entries = Favourites::entries();
    ASSERT_EQ(entries.size(), 10);
    EXPECT_EQ(entries.front(), QStringLiteral("0999"));
    EXPECT_EQ(entries.at(1), QStringLiteral("01701"));
    EXPECT_EQ(entries.back(), QStringLiteral("01709"));
    EXPECT_EQ(count(), QStringLiteral("10"));
}

TEST_F(FavouritesTest, AnExistingOneMovesUp) {
    fill(5);
    Favourites::remember(QStringLiteral("01703"));
    EXPECT_EQ(Favourites::entries(), (QStringList{"01703", "01701", "01702", "01704", "01705"}));
    EXPECT_EQ(count(), QStringLiteral("05"));
    // A bare number finds the entry that carries a name before it.
    Favourites::remember(QStringLiteral("Anna Berg:0160"));
    Favourites::remember(QStringLiteral("01701"));
    Favourites::remember(QStringLiteral("0160"));
    EXPECT_EQ(Favourites::entries().front(), QStringLiteral("Anna Berg:0160"));
    EXPECT_EQ(count(), QStringLiteral("06"));
}

TEST_F(FavouritesTest, FirstOneCountsFromAnEmptyProfile) {
    EXPECT_TRUE(Favourites::entries().isEmpty());
    Favourites::remember(QStringLiteral("0171"));
    EXPECT_EQ(count(), QStringLiteral("01"));
    EXPECT_EQ(Favourites::entries(), QStringList{"0171"});
    Favourites::clear();
    EXPECT_TRUE(Favourites::entries().isEmpty());
    EXPECT_TRUE(count().isNull());
}

TEST_F(FavouritesTest, ACountAboveTenIsLeftAlone) {
    fill(2);
    tessaly::profile::writeProfileString(Favourites::kSection, QStringLiteral("Values"),
                                         QStringLiteral("11"));
    Favourites::remember(QStringLiteral("0999"));
    EXPECT_EQ(Favourites::entry(1), QStringLiteral("01701"));
    EXPECT_EQ(count(), QStringLiteral("11"));
}

} // namespace

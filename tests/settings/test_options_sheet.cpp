// The options sheet and the page protocol: page order, titles, absent pages, activation,
// loading, storing when a page is left, Factory Settings, and the one save on close.

#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "settings/options_page.h"
#include "tests/settings/options_fixture.h"

#include <string>

namespace options_test {
namespace {

using tessaly::PropertyPage;
using tessaly::sms::CPpOptions;
using tessaly::sms::OptionsEnvironment;
using tessaly::sms::OptionsPageFactory;
using tessaly::sms::OptionsPageKind;
using tessaly::sms::OptionsSheet;

std::vector<std::string>* journal = nullptr;

// A page that writes what the protocol asked of it into the journal. Leaving it stores
// "status report on", so the library has a change to announce.
class JournalPage final : public CPpOptions {
public:
    JournalPage(int templateId, int menuId, int inputPanel)
        : CPpOptions(templateId, menuId, inputPanel) {}

    bool dataLoad() override { return note("load"); }
    bool dataSave() override {
        mainPreferences()->setStatusReport(true);
        return note("save");
    }
    bool dataSetDefault() override { return note("default"); }

private:
    bool note(const char* what) {
        journal->push_back(tabText().toStdString() + " " + what);
        return true;
    }
};

template <int templateId, int menuId, int inputPanel>
std::unique_ptr<PropertyPage> makeJournalPage(OptionsEnvironment&) {
    return std::make_unique<JournalPage>(templateId, menuId, inputPanel);
}

std::unique_ptr<PropertyPage> makeNothing(OptionsEnvironment&) {
    return nullptr;
}

constexpr auto makeSignature = &makeJournalPage<IDD_PAGE_SIGNATURE, IDR_MENU_EDIT, SIP_UP>;
constexpr auto makeSending =
    &makeJournalPage<IDD_PAGE_SENDING, IDR_MENU_SENDING_PAGE, SIP_FORCEDOWN>;
constexpr auto makeReceiving = &makeJournalPage<IDD_PAGE_RECEIVING, 0, SIP_FORCEDOWN>;

class OptionsSheetTest : public OptionsTest {
protected:
    void SetUp() override {
        OptionsTest::SetUp();
        journal = &entries;
    }
    void TearDown() override {
        journal = nullptr;
        OptionsTest::TearDown();
    }

    std::vector<std::string> entries;
};

TEST_F(OptionsSheetTest, PagesStandInTheirOrderWhateverTheListsOrder) {
    // Given backwards, with a second Sending page, a kind whose maker gives nothing and one
    // without a maker: only the first page of each kind that could be made is there.
    const OptionsPageFactory pages[] = {
        {OptionsPageKind::CellBroadcast, &makeNothing}, {OptionsPageKind::Receiving, makeReceiving},
        {OptionsPageKind::Sending, makeSending},        {OptionsPageKind::Sending, makeReceiving},
        {OptionsPageKind::Templates, nullptr},          {OptionsPageKind::Signature, makeSignature},
    };
    runSheet(pages, [](OptionsSheet& sheet) {
        EXPECT_EQ(sheet.title(), QStringLiteral("Options"));
        EXPECT_EQ(sheet.caption(), QStringLiteral("SMS"));
        EXPECT_EQ(sheet.pageKinds(), (std::vector<OptionsPageKind>{OptionsPageKind::Signature,
                                                                   OptionsPageKind::Sending,
                                                                   OptionsPageKind::Receiving}));
        ASSERT_EQ(sheet.pageCount(), 3);
        EXPECT_EQ(sheet.page(0)->tabText(), QStringLiteral("Signature"));
        EXPECT_EQ(sheet.page(1)->tabText(), QStringLiteral("Sending"));
        EXPECT_EQ(sheet.page(2)->tabText(), QStringLiteral("Receiving"));
    });
}

TEST_F(OptionsSheetTest, PagesLoadOnceStoreWhenLeftAndFactorySettingsOnlyResets) {
    const OptionsPageFactory pages[] = {
        {OptionsPageKind::Signature, makeSignature},
        {OptionsPageKind::Sending, makeSending},
        {OptionsPageKind::Receiving, makeReceiving},
    };
    runSheet(pages, [&](OptionsSheet& sheet) {
        ASSERT_TRUE(sheet.setActivePage(1));
        ASSERT_TRUE(tessaly::testkit::click(*sheet.page(1), IDC_FACTORY_SETTINGS));
        EXPECT_EQ(entries.back(), "Sending default");
        ASSERT_TRUE(sheet.setActivePage(0)); // back: loaded before, not again
        ASSERT_TRUE(sheet.setActivePage(1));
    });
    // The sheet's OK leaves the page in view, then closes.
    EXPECT_EQ(entries, (std::vector<std::string>{"Signature load", "Signature save", "Sending load",
                                                 "Sending default", "Sending save",
                                                 "Signature save", "Sending save"}));
}

TEST_F(OptionsSheetTest, ActivationPutsThePagesMenuAndInputPanel) {
    const OptionsPageFactory pages[] = {
        {OptionsPageKind::Signature, makeSignature},
        {OptionsPageKind::Sending, makeSending},
        {OptionsPageKind::Receiving, makeReceiving},
    };
    runSheet(pages, [&](OptionsSheet& sheet) {
        tessaly::CommandBar* bar = sheet.commandBar();
        ASSERT_NE(bar, nullptr);
        EXPECT_EQ(bar->menuId(), IDR_MENU_EDIT);
        EXPECT_EQ(bar->target(), sheet.page(0));
        EXPECT_TRUE(tessaly::Shell::current().inputPanelUp());
        ASSERT_TRUE(sheet.setActivePage(1));
        EXPECT_EQ(bar->menuId(), IDR_MENU_SENDING_PAGE);
        EXPECT_EQ(tessaly::Shell::current().inputPanelRequests().back(), SIP_FORCEDOWN);
        ASSERT_TRUE(sheet.setActivePage(2));
        EXPECT_EQ(bar->menuId(), 0);
        EXPECT_TRUE(bar->items().empty());
        EXPECT_FALSE(tessaly::Shell::current().inputPanelUp());
    });
}

TEST_F(OptionsSheetTest, ClosingSavesTheRecordOnceAndAnnouncesTheChangesOnce) {
    PreferenceEvents events;
    const OptionsPageFactory pages[] = {{OptionsPageKind::Sending, makeSending}};
    environment.record.phone = QStringLiteral("+4917012345");
    runSheet(pages, [&](OptionsSheet& sheet) {
        settle();
        EXPECT_TRUE(environment.saved.empty());
        sheet.sendCommand(IDCANCEL); // closing without OK still writes the record
    });
    ASSERT_EQ(environment.saved.size(), 1u);
    EXPECT_EQ(environment.saved.front().phone, QStringLiteral("+4917012345"));
    EXPECT_EQ(events.count, 0); // Cancel left the page unsaved: nothing to announce

    runSheet(pages, [](OptionsSheet&) {});
    EXPECT_EQ(environment.saved.size(), 2u);
    EXPECT_EQ(events.count, 1);
    EXPECT_TRUE(preferences().statusReport());
}

TEST_F(OptionsSheetTest, WithoutTheLibrarysPreferencesPagesNeitherLoadNorStore) {
    tessaly::telephony::close();
    const OptionsPageFactory pages[] = {
        {OptionsPageKind::Signature, makeSignature},
        {OptionsPageKind::Sending, makeSending},
    };
    runSheet(pages, [](OptionsSheet& sheet) { ASSERT_TRUE(sheet.setActivePage(1)); });
    EXPECT_TRUE(entries.empty());
    EXPECT_EQ(environment.saved.size(), 1u); // the record is still written (and refused)
}

TEST_F(OptionsSheetTest, APageWithoutItsOwnOperationsSaysWhichOneIsMissing) {
    struct BarePage final : CPpOptions {
        BarePage()
            : CPpOptions(IDD_PAGE_RECEIVING, 0, SIP_FORCEDOWN) {}
    };
    const OptionsPageFactory pages[] = {
        {OptionsPageKind::Receiving,
         [](OptionsEnvironment&) -> std::unique_ptr<PropertyPage> {
             return std::make_unique<BarePage>();
         }},
    };
    // The page loads while the sheet is being created, before the sheet's run begins.
    user.answerBox(IDOK)
        .runModal([](tessaly::Dialog& dialog) {
            auto& sheet = static_cast<OptionsSheet&>(dialog);
            tessaly::testkit::click(*sheet.page(0), IDC_FACTORY_SETTINGS);
            sheet.sendCommand(IDOK);
        })
        .answerBox(IDOK)
        .answerBox(IDOK);
    OptionsSheet(nullptr, environment, pages).doModal();
    ASSERT_EQ(user.boxes().size(), 3u);
    EXPECT_EQ(user.boxes()[0].text, QStringLiteral("DataLoad"));
    EXPECT_EQ(user.boxes()[1].text, QStringLiteral("DataSetDefault"));
    EXPECT_EQ(user.boxes()[2].text, QStringLiteral("DataSave"));
}

} // namespace
} // namespace options_test

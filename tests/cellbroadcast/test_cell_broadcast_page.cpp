#include "cb_fixture.h"
#include "cellbroadcast/add_channel_dialog.h"
#include "cellbroadcast/cell_broadcast_page.h"
#include "framework/ui/menu.h"
#include "framework/ui/property_sheet.h"
#include "resources/resource.h"
#include "settings/options_sheet.h"
#include "settings/sms_settings.h"

#include <functional>

namespace {

using namespace cb_test;
using tessaly::Dialog;
using tessaly::PropertySheet;
using tessaly::Shell;
using tessaly::sms::AddChannelDialog;
using tessaly::sms::CellBroadcastPage;
using tessaly::sms::OptionsPageFactory;
using tessaly::sms::OptionsPageKind;
using tessaly::sms::OptionsSheet;
namespace testkit = tessaly::testkit;
using Ranges = std::vector<std::pair<int, int>>;

// Asks the library for the subscription and keeps its answer.
class SubscriptionReader final : public GSM::CellBroadcast::EventHandler {
public:
    void eventSubscription(int channelCount, const Utilities::Range* channels, int languageCount,
                           const Utilities::Range* languages) override {
        this->channels.clear();
        this->languages.clear();
        for (int i = 0; i < channelCount; ++i)
            this->channels.emplace_back(channels[i].first, channels[i].last);
        for (int i = 0; i < languageCount; ++i)
            this->languages.emplace_back(languages[i].first, languages[i].last);
    }
    Ranges channels;
    Ranges languages;
};

class QuietEnvironment final : public tessaly::sms::OptionsEnvironment {
public:
    SmsSettings& settings() override { return record; }
    void saveSettings() override {}
    SmsSettings record;
};

constexpr OptionsPageFactory kThePage[] = {
    {OptionsPageKind::CellBroadcast, &CellBroadcastPage::make}};

class CellBroadcastPageTest : public CbWindowTest {
protected:
    // Opens the options sheet with the page, lets the library answer (unless told not to),
    // runs the steps and closes the sheet with OK.
    void withPage(const std::function<void(PropertySheet&, CellBroadcastPage&)>& steps,
                  bool answer = true) {
        user.runModal([&](Dialog& dialog) {
            auto& sheet = static_cast<OptionsSheet&>(dialog);
            auto* page = dynamic_cast<CellBroadcastPage*>(sheet.page(0));
            ASSERT_NE(page, nullptr);
            if (answer)
                settle();
            steps(sheet, *page);
            if (sheet.isWindow() && !sheet.hasEnded())
                sheet.sendCommand(IDOK);
        });
        OptionsSheet sheet(nullptr, environment, kThePage);
        sheet.doModal();
        settle();
    }

    QuietEnvironment environment;

    static QStringList channels(const CellBroadcastPage& page) {
        QStringList texts;
        const tessaly::ListBox* list = page.listBox(IDC_CB_CHANNELS);
        for (int i = 0; i < list->count(); ++i)
            texts << list->text(i);
        return texts;
    }

    static QStringList selectedLanguages(const CellBroadcastPage& page) {
        QStringList names;
        const tessaly::ListBox* list = page.listBox(IDC_CB_LANGUAGES);
        for (int i = 0; i < list->count(); ++i)
            if (list->isSel(i))
                names << list->text(i);
        return names;
    }

    static bool listsShown(const CellBroadcastPage& page) {
        return page.isItemVisible(IDC_CB_CHANNELS) && page.isItemVisible(IDC_CB_LANGUAGES) &&
               !page.isItemVisible(IDC_CB_STATUS);
    }

    // Add, type the number, OK: the page takes it on its next message turn.
    void addChannel(PropertySheet& sheet, const QString& number) {
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_ADD));
        auto* dialog = dynamic_cast<AddChannelDialog*>(testkit::findWindow(IDD_ADD_CHANNEL));
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(testkit::type(*dialog, IDC_ADD_CHANNEL_NUMBER, number));
        dialog->sendCommand(IDOK);
        settle();
    }

    struct Subscription {
        Ranges channels;
        Ranges languages;
    };
    static Subscription subscription() {
        SubscriptionReader reader;
        EXPECT_TRUE(GSM::CellBroadcast::getMessageTypes().isOk());
        settle();
        return {reader.channels, reader.languages};
    }
};

TEST_F(CellBroadcastPageTest, WaitsForTheSubscriptionThenListsItAsText) {
    subscribe({{50, 54}, {100, 101}}, {{0, 2}});
    withPage(
        [&](PropertySheet& sheet, CellBroadcastPage& page) {
            EXPECT_FALSE(listsShown(page));
            EXPECT_TRUE(page.isItemVisible(IDC_CB_STATUS));
            EXPECT_EQ(page.itemText(IDC_CB_STATUS),
                      QStringLiteral("Querying set of active channels and selected languages."));
            EXPECT_EQ(page.listBox(IDC_CB_LANGUAGES)->count(), 15);
            settle();
            EXPECT_TRUE(listsShown(page));
            EXPECT_EQ(channels(page), (QStringList{"100", "50", "51", "52", "53"}));
            EXPECT_EQ(selectedLanguages(page), (QStringList{"English", "German"}));
            EXPECT_EQ(page.tabText(), QStringLiteral("Cell Broadcast"));
            EXPECT_EQ(sheet.commandBar()->menuId(), IDR_MENU_CHANNEL);
            EXPECT_FALSE(Shell::current().inputPanelUp());
            // Changed behind the page's back: a page without changes must not send its own.
            subscribe({{7, 8}});
            EXPECT_FALSE(page.isModified());
        },
        false);
    EXPECT_EQ(subscription().channels, (Ranges{{7, 8}}));
}

TEST_F(CellBroadcastPageTest, CheckBoxesEnableTheirPairsAndAreStoredWhenLeft) {
    GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences();
    ASSERT_TRUE(preferences->setTickerScrolls(true).isOk());
    ASSERT_TRUE(preferences->setTickerHorizontal(false).isOk());
    ASSERT_TRUE(preferences->setShowCbDialog(false).isOk());
    ASSERT_TRUE(preferences->setShowEveryCbMessage(true).isOk());
    withPage([](PropertySheet&, CellBroadcastPage& page) {
        EXPECT_EQ(page.isItemChecked(IDC_CB_TICKER_SCROLLS), BST_CHECKED);
        EXPECT_EQ(page.isItemChecked(IDC_CB_VERTICALLY), BST_CHECKED);
        EXPECT_EQ(page.isItemChecked(IDC_CB_SHOW_DIALOG), BST_UNCHECKED);
        EXPECT_EQ(page.isItemChecked(IDC_CB_EVERY_MESSAGE), BST_CHECKED);
        EXPECT_TRUE(page.isItemEnabled(IDC_CB_HORIZONTALLY));
        EXPECT_FALSE(page.isItemEnabled(IDC_CB_CHANGED_MESSAGES));
        EXPECT_FALSE(page.isItemEnabled(IDC_CB_EVERY_MESSAGE));

        ASSERT_TRUE(testkit::click(page, IDC_CB_TICKER_SCROLLS));
        EXPECT_FALSE(page.isItemEnabled(IDC_CB_HORIZONTALLY));
        EXPECT_FALSE(page.isItemEnabled(IDC_CB_VERTICALLY));
        ASSERT_TRUE(testkit::click(page, IDC_CB_SHOW_DIALOG));
        EXPECT_TRUE(page.isItemEnabled(IDC_CB_CHANGED_MESSAGES));
        ASSERT_TRUE(testkit::click(page, IDC_CB_CHANGED_MESSAGES));
        ASSERT_TRUE(testkit::click(page, IDC_CB_TICKER_SCROLLS));
        ASSERT_TRUE(testkit::click(page, IDC_CB_HORIZONTALLY));
    });
    EXPECT_TRUE(preferences->tickerScrolls());
    EXPECT_TRUE(preferences->tickerHorizontal());
    EXPECT_TRUE(preferences->showCbDialog());
    EXPECT_FALSE(preferences->showEveryCbMessage());
}

TEST_F(CellBroadcastPageTest, AddedChannelsAreSelectedListedOnceAndSent) {
    subscribe({{50, 51}});
    withPage([&](PropertySheet& sheet, CellBroadcastPage& page) {
        addChannel(sheet, QStringLiteral("7"));
        EXPECT_TRUE(Shell::current().inputPanelUp());
        EXPECT_EQ(testkit::findWindow(IDD_ADD_CHANNEL), nullptr);
        EXPECT_EQ(page.addChannelDialog(), nullptr);
        EXPECT_TRUE(page.isModified());
        addChannel(sheet, QStringLiteral("007"));
        addChannel(sheet, QStringLiteral("50")); // already there: selected, not added
        EXPECT_EQ(channels(page), (QStringList{"007", "50", "7"}));
        EXPECT_EQ(page.listBox(IDC_CB_CHANNELS)->curSel(), 1);
        addChannel(sheet, QString()); // nothing typed: nothing added
        EXPECT_EQ(channels(page).size(), 3);
    });
    EXPECT_EQ(subscription().channels, (Ranges{{7, 8}, {50, 51}}));
}

TEST_F(CellBroadcastPageTest, AddingBeforeTheAnswerShowsTheListsAndKeepsTheAnswer) {
    subscribe({{50, 52}});
    withPage(
        [&](PropertySheet& sheet, CellBroadcastPage& page) {
            addChannel(sheet, QStringLiteral("51"));
            EXPECT_TRUE(listsShown(page));
            settle(); // the answer arrives after the person added 51
            EXPECT_EQ(channels(page), (QStringList{"50", "51"}));
        },
        false);
    EXPECT_EQ(subscription().channels, (Ranges{{50, 52}}));
}

TEST_F(CellBroadcastPageTest, AddDoesNothingWhenTheListHoldsAsManyAsTheFolder) {
    const int capacity = GSM::CbFolder().capacity();
    subscribe({{100, 100 + capacity}});
    withPage([&](PropertySheet& sheet, CellBroadcastPage& page) {
        ASSERT_EQ(page.listBox(IDC_CB_CHANNELS)->count(), capacity);
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_ADD));
        EXPECT_EQ(testkit::findWindow(IDD_ADD_CHANNEL), nullptr);
        EXPECT_FALSE(page.isModified());
    });
}

TEST_F(CellBroadcastPageTest, DeleteSelectsTheNextChannelAndTheLastLeavesNone) {
    subscribe({{50, 53}});
    withPage([&](PropertySheet& sheet, CellBroadcastPage& page) {
        tessaly::ListBox* list = page.listBox(IDC_CB_CHANNELS);
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_DELETE)); // nothing selected
        EXPECT_FALSE(page.isModified());
        ASSERT_TRUE(testkit::select(page, IDC_CB_CHANNELS, 1));
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_DELETE));
        EXPECT_EQ(channels(page), (QStringList{"50", "52"}));
        EXPECT_EQ(list->curSel(), 1);
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_DELETE));
        EXPECT_EQ(list->curSel(), 0); // the last one went: the new last is selected
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_DELETE));
        EXPECT_EQ(list->count(), 0);
        EXPECT_EQ(list->curSel(), LB_ERR);
        EXPECT_TRUE(page.isModified());
    });
    EXPECT_TRUE(subscription().channels.empty());
}

TEST_F(CellBroadcastPageTest, LanguageChoicesBecomeRanges) {
    subscribe({{50, 51}}, {{0, 2}});
    auto tap = [](CellBroadcastPage& page, const char* name) {
        const int row = page.listBox(IDC_CB_LANGUAGES)->findStringExact(-1, QLatin1String(name));
        return testkit::select(page, IDC_CB_LANGUAGES, row);
    };
    withPage([&](PropertySheet&, CellBroadcastPage& page) {
        ASSERT_TRUE(tap(page, "English"));
        EXPECT_TRUE(page.isModified());
        ASSERT_TRUE(tap(page, "Polish"));
        EXPECT_EQ(selectedLanguages(page), (QStringList{"German", "Polish"}));
    });
    EXPECT_EQ(subscription().languages, (Ranges{{0, 1}, {14, 15}}));

    withPage([&](PropertySheet&, CellBroadcastPage& page) {
        ASSERT_TRUE(tap(page, "German"));
        ASSERT_TRUE(tap(page, "Polish"));
        EXPECT_TRUE(selectedLanguages(page).isEmpty());
    });
    EXPECT_TRUE(subscription().languages.empty());
}

TEST_F(CellBroadcastPageTest, TheLibrarysErrorsStandInPlaceOfTheLists) {
    subscribe({{50, 51}});
    withPage([&](PropertySheet& sheet, CellBroadcastPage& page) {
        page.eventCbFailure(GSM::Result(GSM::ErrorNotAvailable, u"The network did not answer."));
        EXPECT_EQ(page.itemText(IDC_CB_STATUS), QStringLiteral("The network did not answer."));
        EXPECT_TRUE(listsShown(page)); // the text changes, not what is shown

        // A channel the phone cannot take: the save fails and says why where the lists were.
        addChannel(sheet, QStringLiteral("70000"));
        EXPECT_TRUE(listsShown(page));
        EXPECT_TRUE(page.onKillActive());
        EXPECT_FALSE(listsShown(page));
        EXPECT_EQ(page.itemText(IDC_CB_STATUS),
                  QStringLiteral("The subscription holds an empty or out-of-range range."));
    });
    EXPECT_EQ(subscription().channels, (Ranges{{50, 51}}));
}

TEST_F(CellBroadcastPageTest, PicturesOfThePageAndTheAddChannelDialog) {
    subscribe({{50, 51}, {221, 222}, {4370, 4371}}, {{0, 2}});
    withPage([&](PropertySheet& sheet, CellBroadcastPage&) {
        EXPECT_TRUE(testkit::saveScreenshot(
            sheet, testkit::testOutputPath(QStringLiteral("cb_options_page.png"))));
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_CHANNEL_ADD));
        tessaly::Dialog* dialog = testkit::findWindow(IDD_ADD_CHANNEL);
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(testkit::type(*dialog, IDC_ADD_CHANNEL_NUMBER, QStringLiteral("919")));
        EXPECT_TRUE(testkit::saveScreenshot(
            *dialog, testkit::testOutputPath(QStringLiteral("cb_add_channel.png"))));
        dialog->sendCommand(IDOK);
        settle();
    });
}

} // namespace

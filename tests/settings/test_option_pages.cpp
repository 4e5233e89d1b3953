// The Sending, Receiving and Signature pages inside the options sheet, against the library's
// preferences, the device setting and a sounds folder of the test's own; and a picture of
// every page and of the service-centre dialogs.

#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "settings/receiving_page.h"
#include "settings/sending_page.h"
#include "settings/service_centre_dialogs.h"
#include "settings/signature_page.h"
#include "tests/settings/options_fixture.h"
#include "tests/testkit/qstring_printer.h"

#include <QDir>
#include <QFile>

namespace options_test {
namespace {

using tessaly::Dialog;
using tessaly::sms::OptionsPageFactory;
using tessaly::sms::OptionsPageKind;
using tessaly::sms::OptionsSheet;
namespace simulator = tessaly::telephony::simulator;
namespace testkit = tessaly::testkit;

constexpr OptionsPageFactory kSending[] = {
    {OptionsPageKind::Sending, &tessaly::sms::SendingPage::make}};
constexpr OptionsPageFactory kReceiving[] = {
    {OptionsPageKind::Receiving, &tessaly::sms::ReceivingPage::make}};
constexpr OptionsPageFactory kSignature[] = {
    {OptionsPageKind::Signature, &tessaly::sms::SignaturePage::make}};
constexpr OptionsPageFactory kAllPages[] = {
    {OptionsPageKind::Signature, &tessaly::sms::SignaturePage::make},
    {OptionsPageKind::Sending, &tessaly::sms::SendingPage::make},
    {OptionsPageKind::Receiving, &tessaly::sms::ReceivingPage::make},
};

bool checked(Dialog& page, int id) {
    return page.isItemChecked(id) == BST_CHECKED;
}

QString selectedText(Dialog& page, int comboId) {
    tessaly::ComboBox* combo = page.comboBox(comboId);
    return combo && combo->curSel() >= 0 ? combo->currentText() : QString();
}

class OptionPagesTest : public OptionsTest {
protected:
    static QString text(const WCHAR* value) { return QString::fromUtf16(value); }

    void addSounds(const QStringList& fileNames) {
        QDir().mkpath(soundsFolder());
        for (const QString& name : fileNames) {
            QFile file(QDir(soundsFolder()).filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    static QString soundsFolder() { return tessaly::Shell::current().soundsFolder(); }
};

// ---- Sending ----

TEST_F(OptionPagesTest, ValidityShowsItsChoiceAndLeavingThePageStoresItsCode) {
    const struct {
        int stored;
        const char* shown;
        int storedAfter;
    } cases[] = {
        {11, "1 Hour", 11},    {71, "6 Hours", 71}, {167, "1 Day", 167}, {175, "1 Week", 175},
        {255, "Maximum", 255}, {173, "1 Hour", 11}, {0, "1 Hour", 11},
    };
    for (const auto& validity : cases) {
        SCOPED_TRACE(validity.stored);
        ASSERT_TRUE(preferences().setValidityPeriod(validity.stored).isOk());
        runSheet(kSending, [&](OptionsSheet& sheet) {
            EXPECT_EQ(selectedText(*sheet.page(0), IDC_SENDING_VALIDITY),
                      QString::fromLatin1(validity.shown));
            EXPECT_EQ(sheet.page(0)->comboBox(IDC_SENDING_VALIDITY)->count(), 5);
        });
        EXPECT_EQ(preferences().validityPeriod(), validity.storedAfter);
    }
}

TEST_F(OptionPagesTest, TheSendingPageShowsItsStoresAndFactorySettingsOnlyResetsControls) {
    ASSERT_TRUE(preferences().setSendWhileRoaming(false).isOk());
    ASSERT_TRUE(preferences().setUseSameServiceCentre(true).isOk());
    ASSERT_TRUE(preferences().setStatusReport(true).isOk());
    ASSERT_TRUE(preferences().setValidityPeriod(71).isOk());
    environment.record.showProgress = false;
    GSM::ServiceCentreList& centres = *preferences().serviceCentres();
    centres.add(u"Mine", u"+4930123");
    ASSERT_TRUE(centres.setPreferred(1).isOk());
    runSheet(kSending, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        EXPECT_FALSE(checked(page, IDC_SENDING_ROAMING));
        EXPECT_TRUE(checked(page, IDC_SENDING_SAME_SC));
        EXPECT_TRUE(checked(page, IDC_SENDING_STATUS_REPORT));
        EXPECT_FALSE(checked(page, IDC_SENDING_SHOW_PROGRESS));
        EXPECT_EQ(selectedText(page, IDC_SENDING_SC), QStringLiteral("Mine (+4930123)"));

        ASSERT_TRUE(testkit::click(page, IDC_FACTORY_SETTINGS));
        EXPECT_TRUE(checked(page, IDC_SENDING_ROAMING));
        EXPECT_TRUE(checked(page, IDC_SENDING_SHOW_PROGRESS));
        EXPECT_FALSE(checked(page, IDC_SENDING_SAME_SC));
        EXPECT_FALSE(checked(page, IDC_SENDING_STATUS_REPORT));
        EXPECT_EQ(selectedText(page, IDC_SENDING_VALIDITY), QStringLiteral("Maximum"));
        EXPECT_EQ(selectedText(page, IDC_SENDING_SC), QStringLiteral("Mine (+4930123)"));
        // Nothing is stored before the page is left.
        EXPECT_FALSE(preferences().sendWhileRoaming());
        EXPECT_EQ(preferences().validityPeriod(), 71);
        EXPECT_FALSE(environment.record.showProgress);
        // Meanwhile another preference changes the preferred centre: leaving writes the
        // selection shown back.
        centres.setPreferred(0);
    });
    EXPECT_TRUE(preferences().sendWhileRoaming());
    EXPECT_FALSE(preferences().useSameServiceCentre());
    EXPECT_FALSE(preferences().statusReport());
    EXPECT_EQ(preferences().validityPeriod(), 255);
    EXPECT_EQ(centres.preferred(), 1);
    ASSERT_EQ(environment.saved.size(), 1u);
    EXPECT_TRUE(environment.saved.back().showProgress);
}

TEST_F(OptionPagesTest, PreferGprsFollowsTheDeviceAndIsLeftAloneWhenTheDeviceCannotTell) {
    simulator::setSmsServiceKnown(true);
    ASSERT_TRUE(GSM::device.setSmsService(GSM::Device::SmsServiceGprs).isOk());
    settle();
    runSheet(kSending, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        EXPECT_TRUE(page.item(IDC_SENDING_PREFER_GPRS)->isEnabled());
        EXPECT_TRUE(checked(page, IDC_SENDING_PREFER_GPRS));
        // The device changes its mind while the page is open.
        ASSERT_TRUE(GSM::device.setSmsService(GSM::Device::SmsServiceCircuit).isOk());
        settle();
        EXPECT_FALSE(checked(page, IDC_SENDING_PREFER_GPRS));
        ASSERT_TRUE(testkit::click(page, IDC_SENDING_PREFER_GPRS));
    });
    EXPECT_EQ(GSM::device.smsService(), GSM::Device::SmsServiceGprs);

    simulator::setSmsServiceKnown(false);
    runSheet(kSending, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        EXPECT_FALSE(page.item(IDC_SENDING_PREFER_GPRS)->isEnabled());
        EXPECT_FALSE(checked(page, IDC_SENDING_PREFER_GPRS)); // the template's state, left
        // Were the page to store the unchecked box now, the device would go to 3.
        simulator::setSmsServiceKnown(true);
    });
    EXPECT_EQ(GSM::device.smsService(), GSM::Device::SmsServiceGprs);
}

TEST_F(OptionPagesTest, TheServiceCentersCommandOpensTheDirectoryAndRefillsTheCombo) {
    runSheet(kSending, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        EXPECT_EQ(page.comboBox(IDC_SENDING_SC)->count(), 208); // filled from the table
        user.runModal([](Dialog& directory) {
            EXPECT_EQ(directory.templateId(), IDD_SERVICE_CENTRE_DIRECTORY);
            preferences().serviceCentres()->remove(1);
            directory.sendCommand(IDOK);
        });
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_SERVICE_CENTERS));
        EXPECT_EQ(page.comboBox(IDC_SENDING_SC)->count(), 207);
    });
}

// ---- Receiving ----

TEST_F(OptionPagesTest, TheSoundsAreTheWaveFilesOfTheFolderByName) {
    addSounds({".wav", "ring.WAV", "Notify.wav", "alarm.wav", "notes.txt"});
    ASSERT_TRUE(preferences().setSoundName(u"ring").isOk());
    runSheet(kReceiving, [&](OptionsSheet& sheet) {
        tessaly::ComboBox* sounds = sheet.page(0)->comboBox(IDC_RECEIVING_SOUND);
        ASSERT_EQ(sounds->count(), 3);
        EXPECT_EQ(sounds->itemText(0), QStringLiteral("alarm"));
        EXPECT_EQ(sounds->itemText(1), QStringLiteral("Notify"));
        EXPECT_EQ(sounds->itemText(2), QStringLiteral("ring"));
        EXPECT_EQ(sounds->currentText(), QStringLiteral("ring"));
        EXPECT_TRUE(checked(*sheet.page(0), IDC_RECEIVING_PLAY_SOUND));
        EXPECT_TRUE(sounds->isEnabled());
    });
    EXPECT_EQ(tessaly::sms::soundNames({".wav", "a.wav", "x"}), QStringList{"a"});
}

TEST_F(OptionPagesTest, AStoredSoundThatIsGoneSelectsNothingAndStaysStored) {
    addSounds({"alarm.wav"});
    ASSERT_TRUE(preferences().setSoundName(u"Gone").isOk());
    runSheet(kReceiving, [&](OptionsSheet& sheet) {
        EXPECT_EQ(sheet.page(0)->comboBox(IDC_RECEIVING_SOUND)->curSel(), -1);
    });
    EXPECT_EQ(text(preferences().soundName()), QStringLiteral("Gone"));

    // No sounds at all: the same.
    QDir(soundsFolder()).removeRecursively();
    runSheet(kReceiving, [&](OptionsSheet& sheet) {
        EXPECT_EQ(sheet.page(0)->comboBox(IDC_RECEIVING_SOUND)->count(), 0);
    });
    EXPECT_EQ(text(preferences().soundName()), QStringLiteral("Gone"));
}

TEST_F(OptionPagesTest, ChoosingASoundPlaysItAndSwitchingSoundsOffKeepsTheChoice) {
    addSounds({"alarm.wav", "ring.WAV"});
    ASSERT_TRUE(preferences().setSoundName(u"alarm").isOk());
    runSheet(kReceiving, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        ASSERT_TRUE(testkit::select(page, IDC_RECEIVING_SOUND, 1));
        ASSERT_EQ(tessaly::Shell::current().soundsPlayed().size(), 1);
        // The preview asks for "ring.wav"; the folder holds "ring.WAV".
        EXPECT_TRUE(tessaly::Shell::current().soundsPlayed().back().endsWith(
            QStringLiteral("ring.wav"), Qt::CaseInsensitive));
        ASSERT_TRUE(testkit::click(page, IDC_RECEIVING_PLAY_SOUND));
        EXPECT_FALSE(page.comboBox(IDC_RECEIVING_SOUND)->isEnabled());
        EXPECT_EQ(selectedText(page, IDC_RECEIVING_SOUND), QStringLiteral("ring"));
    });
    EXPECT_EQ(preferences().playSound(), 0);
    EXPECT_EQ(text(preferences().soundName()), QStringLiteral("ring"));

    runSheet(kReceiving, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        EXPECT_FALSE(page.comboBox(IDC_RECEIVING_SOUND)->isEnabled());
        ASSERT_TRUE(testkit::click(page, IDC_FACTORY_SETTINGS));
        EXPECT_TRUE(checked(page, IDC_RECEIVING_PLAY_SOUND));
        EXPECT_TRUE(page.comboBox(IDC_RECEIVING_SOUND)->isEnabled());
        EXPECT_EQ(selectedText(page, IDC_RECEIVING_SOUND), QStringLiteral("alarm"));
        EXPECT_EQ(preferences().playSound(), 0); // not before the page is left
    });
    EXPECT_EQ(preferences().playSound(), 1);
    EXPECT_EQ(text(preferences().soundName()), QStringLiteral("alarm"));
}

// ---- Signature ----

TEST_F(OptionPagesTest, TheSignatureFieldsAreStoredWhenThePageIsLeft) {
    environment.record.firstName = QStringLiteral("Ada");
    environment.record.phone = QStringLiteral("+441234");
    runSheet(kSignature, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_FIRST_NAME), QStringLiteral("Ada"));
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_PHONE), QStringLiteral("+441234"));
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_LAST_NAME_LABEL), QStringLiteral("Last Name:"));
        ASSERT_TRUE(testkit::type(page, IDC_SIGNATURE_LAST_NAME, QStringLiteral("Lovelace")));
        EXPECT_TRUE(environment.record.lastName.isEmpty());
    });
    ASSERT_EQ(environment.saved.size(), 1u);
    EXPECT_EQ(environment.saved.back().lastName, QStringLiteral("Lovelace"));
    EXPECT_EQ(environment.saved.back().firstName, QStringLiteral("Ada"));
}

TEST_F(OptionPagesTest, TappingALabelTakesTheSenderFromThePhoneBook) {
    ASSERT_TRUE(simulator::addContact(u"Grace", u"Hopper", {u"+15551234"}).isOk());
    environment.record.firstName = QStringLiteral("Ada");
    runSheet(kSignature, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        user.pickContact(-1);
        ASSERT_TRUE(testkit::click(page, IDC_SIGNATURE_PHONE_LABEL));
        settle();
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_FIRST_NAME), QStringLiteral("Ada"));

        phoneBookAvailable = false;
        ASSERT_TRUE(testkit::click(page, IDC_SIGNATURE_FIRST_NAME_LABEL));
        settle();
        EXPECT_EQ(user.contactPickerRuns(), 1);

        phoneBookAvailable = true;
        user.pickContact(0);
        ASSERT_TRUE(testkit::click(page, IDC_SIGNATURE_LAST_NAME_LABEL));
        settle();
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_FIRST_NAME), QStringLiteral("Grace"));
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_LAST_NAME), QStringLiteral("Hopper"));
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_PHONE), QStringLiteral("+15551234"));
    });
    EXPECT_EQ(environment.saved.back().lastName, QStringLiteral("Hopper"));
}

TEST_F(OptionPagesTest, TheEditMenuActsOnTheFieldLastFocused) {
    environment.record.firstName = QStringLiteral("Ada");
    environment.record.lastName = QStringLiteral("Lovelace");
    runSheet(kSignature, [&](OptionsSheet& sheet) {
        Dialog& page = *sheet.page(0);
        // Nothing focused yet: nothing happens.
        EXPECT_TRUE(testkit::chooseCommand(sheet, IDM_EDIT_SELECT_ALL));
        EXPECT_TRUE(testkit::chooseCommand(sheet, IDM_EDIT_CUT));
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_FIRST_NAME), QStringLiteral("Ada"));
        ASSERT_TRUE(testkit::type(page, IDC_SIGNATURE_LAST_NAME, QString()));
        ASSERT_TRUE(testkit::type(page, IDC_SIGNATURE_FIRST_NAME, QString()));
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_EDIT_SELECT_ALL));
        ASSERT_TRUE(testkit::chooseCommand(sheet, IDM_EDIT_CUT));
        EXPECT_TRUE(page.itemText(IDC_SIGNATURE_FIRST_NAME).isEmpty());
        EXPECT_EQ(page.itemText(IDC_SIGNATURE_LAST_NAME), QStringLiteral("Lovelace"));
    });
}

// ---- pictures ----

TEST_F(OptionPagesTest, PicturesOfEveryPageAndDialog) {
    addSounds({"Notify.wav", "Chime.wav", "Beep.wav"});
    environment.record.firstName = QStringLiteral("Ada");
    environment.record.lastName = QStringLiteral("Lovelace");
    environment.record.phone = QStringLiteral("+44 20 7946 0018");
    runSheet(kAllPages, [&](OptionsSheet& sheet) {
        EXPECT_TRUE(
            testkit::saveScreenshot(sheet, testkit::testOutputPath("options_signature.png")));
        ASSERT_TRUE(sheet.setActivePage(1));
        EXPECT_TRUE(testkit::saveScreenshot(sheet, testkit::testOutputPath("options_sending.png")));
        ASSERT_TRUE(sheet.setActivePage(2));
        EXPECT_TRUE(
            testkit::saveScreenshot(sheet, testkit::testOutputPath("options_receiving.png")));
    });
    user.runModal([](Dialog& directory) { testkit::select(directory, IDC_SC_DIRECTORY_LIST, 3); })
        .runModal([](Dialog& edit) {
            EXPECT_TRUE(testkit::saveScreenshot(
                edit, testkit::testOutputPath("options_service_centre_edit.png")));
        });
    user.runModal([](Dialog& directory) {
        EXPECT_TRUE(testkit::saveScreenshot(
            directory, testkit::testOutputPath("options_service_centres.png")));
    });
    // The first run opens an entry; the second shows the directory.
    tessaly::sms::ServiceCentreDirectoryDialog(nullptr).doModal();
    tessaly::sms::ServiceCentreDirectoryDialog(nullptr).doModal();
}

} // namespace
} // namespace options_test

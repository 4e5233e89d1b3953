// The operators' table, the factory refill, the Sending page's combo box over the list, and
// the directory and edit dialogs on the library's live list.

#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "resources/resource.h"
#include "settings/service_centre_dialogs.h"
#include "settings/service_centres.h"
#include "tests/settings/options_fixture.h"
#include "tests/testkit/qstring_printer.h"

#include <QMouseEvent>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <memory>
#include <string>

namespace options_test {
namespace {

using tessaly::sms::factoryServiceCentres;
using tessaly::sms::ServiceCentreDirectoryDialog;
using tessaly::sms::ServiceCentreEditDialog;
namespace testkit = tessaly::testkit;

// The directory's rows as the operators' list was handed over, "name: number" separated by
// "; ". Three rows end in a space that such a listing cannot show; they are checked apart.
constexpr char16_t kListing[] =
    u"AD Andorra: +376-301004; AE PTT: +971506014994; AT A1: +43-6640501; AT max.mobil.: "
    u"+43-676021; AT one: +43-6990001999; AT Tele.ring: +43-65009000000; AU One.Tel: "
    u"+61-411990001; AU Optus: +61-411990001; AU Optus: +61-411990003; AU Optus: +61-412025989; AU "
    u"Telstra: +61-418706800; AU Telstra: +61-418706900; AU Telstra MobileNet: +61-418706700; AU "
    u"VODAFONE: +61-415011501; AU YES OPTUS: +61-411990000; AZ AZERCELL: +994-50-910-3300; BA PTT "
    u"GSM BIH: +387-90-225522; BE Mobistar: +32-495955205; BE Mobistar: +32-495002530; BE Orange: "
    u"+32-486000005; BE Proximus: +32-475161612; BE PROXIMUS: +32-475161616; BG M-TEL GSM: "
    u"+359-88000301; BH Bahrain: +973-9600179; CA Fido: +1-5149931123; CA Rogers: +1-7057969300; "
    u"CH diAX Switzerland: +41-765980000; CH Orange: +41-787777070; CH Swisscom Mobile: "
    u"+41-794999000; CN CHINA MOBILE: +86-1390591500; CN Telecom: +86-13800100500; CY CYTAGSM: "
    u"+357-9700000; CZ EUROTEL GSM: +420-602909909; CZ PAEGAS: +420-603051; DE D1: +49-1715990000; "
    u"DE D1 Talkline: +49-1710760900; DE D2 Talkline: +49-1722270258; DE D2 extern: "
    u"+49-1722270333; DE D2 intern: +49-1722270000; DE debitel D1: +49-1710760333; DE Debitel: "
    u"+49-1722270222; DE Dr Materna: +49-1722270111; DE E-Plus: +49-1770600000; DE E-Plus: "
    u"+49-1770610000; DE E-Plus: +49-1770620000; DE IC3S: +49-1722270201; DE T-D1: +49-1710760000; "
    u"DE VIAG Interkom: +49-1760000443; DK Free!: +45-40590006; DK mobilix: +45-26265151; DK "
    u"SONOFON: +45-40590000; DK TDK-MOBIL: +45-40390999; DK TELIA DK: +45-28187000; EE EMT GSM: "
    u"+372-5099000; EE RADIOLINJA EESTI: +372-568771010; EE Ritabell: +372-5509911; EG CLICK GSM: "
    u"+20-105996500; EG MobiNil: +20-122000020; ES Airtel: +34-607003110; ES AIRTEL: "
    u"+34-607133000; ES Amena: +34-656000311; ES MoviStar: +34-609090909; FI Radiolinja: "
    u"+358-508771010; FI SONERA: +358-405202000; FR BOUYGUES TELECOM: +33-660003000; FR Itineris: "
    u"+33-689004000; FR Itineris: +33-689004431; FR Itineris: +33-68900458; FR SFR: +33-609001390; "
    u"GR COSMOTE: +30-97100000; GR PANAFON: +30-94219000; GR TELESTET: +30-93597000; GR TELESTET: "
    u"+30-93599000; HK HK Telecom: +852-90288000; HK Hutchinson: +852-94985795; HK Smartone: "
    u"+852-90100000; HR CRONET: +385-980501; HR VIP-NET: +385-910401; HU PANNON GSM: "
    u"+36-209300099; HU Vodafone: +36-709996500; HU WESTEL: +36-30-9888-000; ID Exelcomindo: "
    u"+62-818445009; ID Satelindo: +62-81615; ID Telkomsel: +62-81100000; IL Orange: "
    u"+972-54-120032; IN BPL Mobile: +91-9821000005; IN Command: +91-9830099990; IN Essar "
    u"Cellphone: +91-9811009998; IN MAXtouch: +91-9820005446; IN Tata: +91-9848001104; IR "
    u"EIRCELL-GSM: +353-87699989; IR ESat Digifone: +353-868002000; IS LANDSSIMINN: +354-8900100; "
    u"IS TAL: +354-6999099; IT Omni: +39-3492000200; IT Omni: +39-3492000300; IT Omni: "
    u"+39-3492000400; IT Omni: +39-3492000500; IT TIM: +39-3359608000; IT TIM: +39-3359609600; IT "
    u"TIM: +39-338960960; IT TIM: +39-338980000; IT Wind: +39-3205858500; KW Kuwait: +96596000303; "
    u"LB Lebancell: +961-3488888; LT BITE GSM: +370-9950115; LT OMNITEL: +370-9899992; LU LUXGSM: "
    u"+352-021100003; LU TANGO: +352-091000030; LV Baltcom GSM: +371-9599994; LV LMT: "
    u"+371-9202020; Lesotho Vodacom: +266; MK Macedonia: +389-70000501; MK MobiMak: +389-70; ML go "
    u"mobile: +356-79700003; ML Vodafone: +356-941816; MU EMTEL: +230 7290999; MY ADAM: "
    u"+60-173600010; MY Celcom: +60-193900000; MY Maxis: +60-120000015; MY Mutiara: +60-162999000; "
    u"NA MTC: +264-81; NL Ben NL: +31-624000000; NL Dutchtone NV: +31-628500561; NL KPN Mobile: "
    u"+31-653131313; NL Libertel-Vodaphone: +31-6540881000; NL TELFORT: +31-626000230; NO NetCom: "
    u"+47-9208977; NO NetCom GSM: +47-92001000; NO TELENOR: +47-90002100; NO TeleNor: "
    u"+47-90007777; NZ Vodafone: +64-21600600; PH Globe: +63-91702; PH Globe: +63-91703; PH Globe: "
    u"+63-91704; PH Globe: +63-91709; PH Islacom: +63-9150200003; PH Smart: +63-9180000101; PL "
    u"Era: +48-602951111; PL Era GSM: +48-602951112; PL IDEA Centertel: +48-501200777; PL Plus "
    u"GSM: +48-601000310; PL Polkomtel: +48-601000311; PR OPTIMUS: +351-93121314; PR TELECEL: "
    u"+351-911616161; PR TMN: +351-936210000; RO dialog: +40-94946000; RO CONNEX GSM: "
    u"+40-92004000; RU BeeLine GSM: +7-90173100; RU MTS: +7-0957699100; RU North-West GSM: "
    u"+7-8129600096; SA MTN: +27-831000002; SA Vodacom: +27-829119; SA Vodacom: +27-829129; SE "
    u"COMVIQ: +46-707990001; SE Comviq: +46-707773078; SE Comviq: +46-707990002; SE Comviq: "
    u"+46-707990003; SE EUROPOLITAN: +46-708000708; SE TELIA MOBILE: +46-705008999; SG Mobile One: "
    u"+65-96845999; SG SingTel: +65-96197777; SG SingTel: +65-96400001; SG SingTel: +65-96500001; "
    u"SG SingTel: +65-98189999; SK EUROTEL GSM: +421-903333000; SK GLOBTEL: +421-905303303; SV "
    u"MOBITEL GSM: +386-41001333; SV SI.MOBIL: +386-40441000; TH AIS: +66-18110888; TH WP1800: "
    u"+66-16110400; TR TELSiM GSM: +90-5429800033; TR Turkcell Iletisim Hizmetleri A.S.: "
    u"+90-5329010000; TW Chung Wa Tele: +886-932400821; UA GOLDEN TELCOM: +380-444990000; UA "
    u"KYVISTAR: +380-672020000; UA KYVISTAR: +380-672021111; UA UMC: +380-50000501; UK BT CELLNET: "
    u"+44-7802000332; UK CellNet: +44-802000332; UK Guernsey Telecoms: +44-4481/7781; UK Jersey "
    u"Telecom: +44-9797; UK One 2 One: +44-7958879879; UK Orange: +44-7973100973; UK Orange "
    u"internal: +44-973100974; UK PRONTO: +44-7624499955; UK VODAFONE: +44-7785016005; UK Virgin "
    u"Mobile: +44-7958879890; UK Vodafone: +44-385016005; UK WellOM: +380-442517777; US Aerial "
    u"Comms: +1-2812350025; US Aerial Comms: +1-8132630025; US AT&T Wireless: +1-9078319301; US "
    u"Cingular Wireless: +1-2099042010; US DigiPH PCS: +1-3342090307; US Omnipoint: +1-9179070004; "
    u"US POWERTEL PCS INC: +1-3343338200; US Pacific Bell: +1-2099042020; US Sprint: "
    u"+1-7044100000; US VOICESTREAM: +1-2063130004; US Washington PCS: +1-410258953; YU MobTel: "
    u"+381-63100100; YU MobTel: +381-63100200; YU MobTel: +381-63100300; YU MobTel: +381-63100400; "
    u"YU Telekom Srbija: +381-650000900; ZW Econet Wireless: +263-91010030";

QString text(const char16_t* value) {
    return QString::fromUtf16(value);
}

TEST(FactoryServiceCentres, MatchTheOperatorsListRowByRow) {
    const QStringList rows = text(kListing).split(QStringLiteral("; "));
    const auto table = factoryServiceCentres();
    ASSERT_EQ(table.size(), 207u);
    ASSERT_EQ(rows.size(), 207);
    for (int row = 0; row < rows.size(); ++row) {
        const qsizetype colon = rows[row].lastIndexOf(QStringLiteral(": "));
        SCOPED_TRACE("row " + std::to_string(row) + ": " + rows[row].toStdString());
        EXPECT_EQ(text(table[size_t(row)].name).trimmed(), rows[row].left(colon));
        EXPECT_EQ(text(table[size_t(row)].number).trimmed(), rows[row].mid(colon + 2));
    }
}

TEST(FactoryServiceCentres, KeepTheirIrregularRowsAsTheyAre) {
    const struct {
        const char16_t* name;
        const char16_t* number;
    } irregular[] = {
        {u"HK Smartone", u"+852-90100000 "},
        {u"DE VIAG Interkom ", u"+49-1760000443"},
        {u"IT Wind ", u"+39-3205858500"},
        {u"AE PTT", u"+971506014994"},
        {u"KW Kuwait", u"+96596000303"},
        {u"MU EMTEL", u"+230 7290999"},
        {u"UK Guernsey Telecoms", u"+44-4481/7781"},
        {u"Lesotho Vodacom", u"+266"},
        {u"NA MTC", u"+264-81"},
        {u"MK MobiMak", u"+389-70"},
    };
    const auto table = factoryServiceCentres();
    for (const auto& expected : irregular) {
        const auto found = std::find_if(table.begin(), table.end(), [&](const auto& row) {
            return text(row.name) == text(expected.name);
        });
        ASSERT_NE(found, table.end()) << text(expected.name).toStdString();
        EXPECT_EQ(text(found->number), text(expected.number)) << text(expected.name).toStdString();
    }
    // Each name with a trailing space appears once, exactly so.
    EXPECT_EQ(std::count_if(table.begin(), table.end(),
                            [](const auto& row) { return text(row.name).endsWith(u' '); }),
              2);
}

class ServiceCentreTest : public OptionsTest {
protected:
    void SetUp() override {
        OptionsTest::SetUp();
        ASSERT_TRUE(tessaly::telephony::simulator::setSimServiceCentre(u"+491710760000").isOk());
    }

    static GSM::ServiceCentreList& list() { return *preferences().serviceCentres(); }

    static void addEntries(int count) {
        for (int entry = 1; entry <= count; ++entry) {
            const std::u16string number = u"+4917000000" + std::u16string(1, u'0' + entry);
            list().add((u"Centre " + std::u16string(1, u'0' + entry)).c_str(), number.c_str());
        }
    }

    static QStringList names() {
        QStringList result;
        for (int index = 0; index < list().count(); ++index)
            result.append(text(list().get(index)->name()));
        return result;
    }

    // Runs the directory with the script; the script ends the run itself (OK or Cancel).
    void runDirectory(const std::function<void(tessaly::Dialog&)>& script) {
        user.runModal([&](tessaly::Dialog& directory) {
            script(directory);
            if (directory.isWindow() && !directory.hasEnded())
                directory.sendCommand(IDOK);
        });
        ServiceCentreDirectoryDialog(nullptr).doModal();
        settle();
    }

    // The edit dialog's script: checks the fields it opened with, types, presses OK.
    static std::function<void(tessaly::Dialog&)> editTo(QString expectedName, QString name,
                                                        QString number) {
        return [=](tessaly::Dialog& edit) {
            EXPECT_EQ(edit.itemText(IDC_SC_EDIT_NAME), expectedName);
            edit.setItemText(IDC_SC_EDIT_NAME, name);
            edit.setItemText(IDC_SC_EDIT_NUMBER, number);
            edit.sendCommand(IDOK);
        };
    }
};

TEST_F(ServiceCentreTest, RestoringEmptiesTheListAndAddsEveryRowInOrder) {
    addEntries(3);
    ASSERT_TRUE(list().setPreferred(2).isOk());
    tessaly::sms::restoreFactoryServiceCentres(list());
    ASSERT_EQ(list().count(), 208);
    EXPECT_EQ(text(list().get(0)->name()), QStringLiteral("SIM"));
    EXPECT_EQ(text(list().get(1)->name()), QStringLiteral("AD Andorra"));
    EXPECT_EQ(text(list().get(207)->number()), QStringLiteral("+263-91010030"));
}

TEST_F(ServiceCentreTest, TheSendingComboFillsAnEmptyListAndShowsNumbersAfterTheSim) {
    auto combo = std::make_unique<tessaly::ComboBox>();
    tessaly::sms::fillServiceCentreCombo(*combo, &list());
    ASSERT_EQ(combo->count(), 208);
    EXPECT_EQ(combo->itemText(0), QStringLiteral("SIM"));
    EXPECT_EQ(combo->itemText(1), QStringLiteral("AD Andorra (+376-301004)"));
    EXPECT_EQ(combo->curSel(), 0);
    EXPECT_FALSE(list().isEmpty());

    // A list with entries is shown as it is, the preferred entry selected.
    list().removeAll();
    addEntries(2);
    list().setPreferred(2);
    tessaly::sms::fillServiceCentreCombo(*combo, &list());
    EXPECT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->itemText(2), QStringLiteral("Centre 2 (+49170000002)"));
    EXPECT_EQ(combo->curSel(), 2);

    tessaly::sms::fillServiceCentreCombo(*combo, nullptr);
    EXPECT_EQ(combo->count(), 0);
}

TEST_F(ServiceCentreTest, TheSimEntryIsShownButNeverEditedAndOkMakesItPreferred) {
    addEntries(2);
    list().setPreferred(2);
    user.runModal([](tessaly::Dialog& directory) {
            EXPECT_EQ(directory.listView(IDC_SC_DIRECTORY_LIST)->itemCount(), 3);
            EXPECT_EQ(directory.listView(IDC_SC_DIRECTORY_LIST)->itemText(0, 1),
                      QStringLiteral("+491710760000"));
            ASSERT_TRUE(testkit::select(directory, IDC_SC_DIRECTORY_LIST, 0));
            directory.sendCommand(IDOK);
        })
        .answerBox(IDOK);
    ServiceCentreDirectoryDialog(nullptr).doModal();
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes()[0].text, QStringLiteral("User cannot modify or delete SIM address."));
    EXPECT_EQ(user.boxes()[0].icon(), UINT(MB_ICONINFORMATION));
    EXPECT_EQ(list().preferred(), 0);
    EXPECT_EQ(user.modals().size(), 1u); // no edit dialog

    // Its tap-and-hold menu does not open either.
    user.runModal([](tessaly::Dialog& directory) {
            ASSERT_TRUE(testkit::tapAndHold(directory, IDC_SC_DIRECTORY_LIST, 0));
            directory.sendCommand(IDCANCEL);
        })
        .answerBox(IDOK);
    ServiceCentreDirectoryDialog(nullptr).doModal();
    EXPECT_TRUE(user.menus().empty());
}

TEST_F(ServiceCentreTest, AnEditedEntryMovesToTheEndAndOkPrefersTheIndexTapped) {
    addEntries(6);
    user.runModal([](tessaly::Dialog& directory) {
            ASSERT_TRUE(testkit::select(directory, IDC_SC_DIRECTORY_LIST, 5));
            EXPECT_EQ(directory.listView(IDC_SC_DIRECTORY_LIST)->itemText(6, 0),
                      QStringLiteral("Centre 5"));
            directory.sendCommand(IDOK);
        })
        .runModal(editTo(QStringLiteral("Centre 5"), QStringLiteral("Centre 5"),
                         QStringLiteral("+49170999")))
        .answerBox(IDYES);
    ServiceCentreDirectoryDialog(nullptr).doModal();
    EXPECT_EQ(names(), (QStringList{"SIM", "Centre 1", "Centre 2", "Centre 3", "Centre 4",
                                    "Centre 6", "Centre 5"}));
    EXPECT_EQ(text(list().get(6)->number()), QStringLiteral("+49170999"));
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Do you want to save changes?"));
    EXPECT_EQ(user.boxes().back().buttons(), UINT(MB_YESNO));
    EXPECT_EQ(tessaly::Shell::current().inputPanelRequests().back(), SIP_FORCEDOWN);
    // The index tapped, though that entry has moved since.
    EXPECT_EQ(list().preferred(), 5);
}

TEST_F(ServiceCentreTest, ATapBelowTheEntriesOpensANewEntryAndOkChangesNothing) {
    addEntries(2);
    list().setPreferred(1);
    user.runModal([this](tessaly::Dialog& directory) {
            tessaly::ListView* view = directory.listView(IDC_SC_DIRECTORY_LIST);
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                              QPoint(10, view->viewport()->height() - 4));
            settle();
            directory.sendCommand(IDOK);
        })
        .runModal(editTo(QString(), QStringLiteral("Mine"), QStringLiteral("+4930123")))
        .answerBox(IDYES);
    ServiceCentreDirectoryDialog(nullptr).doModal();
    EXPECT_EQ(names().back(), QStringLiteral("Mine"));
    EXPECT_EQ(list().preferred(), 1);
}

TEST_F(ServiceCentreTest, TheEditDialogSavesOnlyAChangeOfTwoFilledFields) {
    addEntries(2);
    const struct {
        const char* what;
        QString name;
        QString number;
        bool asks;
    } cases[] = {
        {"unchanged", QStringLiteral("Centre 1"), QStringLiteral("+49170000001"), false},
        {"a field cleared", QStringLiteral("Centre 1"), QString(), false},
        {"a changed case", QStringLiteral("centre 1"), QStringLiteral("+49170000001"), true},
    };
    for (const auto& change : cases) {
        SCOPED_TRACE(change.what);
        const size_t boxesBefore = user.boxes().size();
        user.runModal(editTo(QStringLiteral("Centre 1"), change.name, change.number));
        if (change.asks)
            user.answerBox(IDNO);
        ServiceCentreEditDialog(nullptr, 1).doModal();
        EXPECT_EQ(user.boxes().size() - boxesBefore, change.asks ? 1u : 0u);
        EXPECT_EQ(names(), (QStringList{"SIM", "Centre 1", "Centre 2"}));
    }
    // A changed SIM entry is refused with its own message.
    user.runModal(editTo(QStringLiteral("SIM"), QStringLiteral("SIM"), QStringLiteral("+1")))
        .answerBox(IDOK);
    ServiceCentreEditDialog(nullptr, 0).doModal();
    EXPECT_EQ(user.boxes().back().text, QStringLiteral("Cannot modify address of SIM!"));
    EXPECT_EQ(user.boxes().back().flags, UINT(MB_OK));
    EXPECT_EQ(text(list().get(0)->number()), QStringLiteral("+491710760000"));
}

TEST_F(ServiceCentreTest, DeleteInTheEditMenuAsksInvertedForThePreferredEntry) {
    addEntries(3);
    list().setPreferred(2);
    const auto chooseDelete = [](tessaly::Dialog& edit) {
        ASSERT_TRUE(testkit::chooseCommand(edit, IDM_EDIT_DELETE));
    };
    // Not the preferred one: gone at once, nothing asked.
    user.runModal(chooseDelete);
    ServiceCentreEditDialog(nullptr, 3).doModal();
    EXPECT_EQ(names(), (QStringList{"SIM", "Centre 1", "Centre 2"}));
    EXPECT_TRUE(user.boxes().empty());
    // The preferred one: OK keeps it, Cancel deletes it.
    user.runModal(chooseDelete).answerBox(IDOK);
    ServiceCentreEditDialog(nullptr, 2).doModal();
    EXPECT_EQ(names(), (QStringList{"SIM", "Centre 1", "Centre 2"}));
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("Do you want to delete the preferred Service Centre?"));
    user.runModal(chooseDelete).answerBox(IDCANCEL);
    ServiceCentreEditDialog(nullptr, 2).doModal();
    EXPECT_EQ(names(), (QStringList{"SIM", "Centre 1"}));
}

TEST_F(ServiceCentreTest, TheContextMenuAsksBeforeDeletingAnyEntry) {
    addEntries(3);
    for (const int answer : {IDCANCEL, IDOK}) {
        user.runModal([](tessaly::Dialog& directory) {
                ASSERT_TRUE(testkit::tapAndHold(directory, IDC_SC_DIRECTORY_LIST, 1));
                directory.sendCommand(IDCANCEL);
            })
            .chooseMenu(IDM_CONTEXT_DELETE)
            .answerBox(answer);
        ServiceCentreDirectoryDialog(nullptr).doModal();
        EXPECT_EQ(user.boxes().back().icon(), UINT(MB_ICONEXCLAMATION));
        EXPECT_EQ(user.boxes().back().buttons(), UINT(MB_OKCANCEL));
    }
    EXPECT_EQ(names(), (QStringList{"SIM", "Centre 2", "Centre 3"}));
}

TEST_F(ServiceCentreTest, NewAndFactorySettingsActAtOnceEvenWhenTheDirectoryIsCancelled) {
    addEntries(1);
    user.runModal([](tessaly::Dialog& directory) {
            ASSERT_TRUE(testkit::click(directory, IDC_SC_DIRECTORY_NEW));
            EXPECT_EQ(directory.listView(IDC_SC_DIRECTORY_LIST)->itemCount(), 3);
            ASSERT_TRUE(testkit::click(directory, IDC_FACTORY_SETTINGS));
            EXPECT_EQ(directory.listView(IDC_SC_DIRECTORY_LIST)->itemCount(), 208);
            directory.sendCommand(IDCANCEL);
        })
        .runModal(editTo(QString(), QStringLiteral("Mine"), QStringLiteral("+4930123")))
        .answerBox(IDYES);
    ServiceCentreDirectoryDialog(nullptr).doModal();
    EXPECT_EQ(list().count(), 208);
    EXPECT_EQ(user.boxes().size(), 1u); // the refill asks nothing
}

} // namespace
} // namespace options_test

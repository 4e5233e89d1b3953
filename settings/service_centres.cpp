#include "settings/service_centres.h"

#include "gsm/preferences.h"
#include "util/wide_text.h"

namespace tessaly::sms {

namespace {

// The operators' service centres, as the directory ships them. Rows keep their spelling and
// their irregularities (a trailing space, a missing or different separator, a bare country
// code): the numbers are shown and stored exactly as they stand here.
constexpr FactoryServiceCentre kFactoryServiceCentres[] = {
    {u"AD Andorra", u"+376-301004"},
    {u"AE PTT", u"+971506014994"},
    {u"AT A1", u"+43-6640501"},
    {u"AT max.mobil.", u"+43-676021"},
    {u"AT one", u"+43-6990001999"},
    {u"AT Tele.ring", u"+43-65009000000"},
    {u"AU One.Tel", u"+61-411990001"},
    {u"AU Optus", u"+61-411990001"},
    {u"AU Optus", u"+61-411990003"},
    {u"AU Optus", u"+61-412025989"},
    {u"AU Telstra", u"+61-418706800"},
    {u"AU Telstra", u"+61-418706900"},
    {u"AU Telstra MobileNet", u"+61-418706700"},
    {u"AU VODAFONE", u"+61-415011501"},
    {u"AU YES OPTUS", u"+61-411990000"},
    {u"AZ AZERCELL", u"+994-50-910-3300"},
    {u"BA PTT GSM BIH", u"+387-90-225522"},
    {u"BE Mobistar", u"+32-495955205"},
    {u"BE Mobistar", u"+32-495002530"},
    {u"BE Orange", u"+32-486000005"},
    {u"BE Proximus", u"+32-475161612"},
    {u"BE PROXIMUS", u"+32-475161616"},
    {u"BG M-TEL GSM", u"+359-88000301"},
    {u"BH Bahrain", u"+973-9600179"},
    {u"CA Fido", u"+1-5149931123"},
    {u"CA Rogers", u"+1-7057969300"},
    {u"CH diAX Switzerland", u"+41-765980000"},
    {u"CH Orange", u"+41-787777070"},
    {u"CH Swisscom Mobile", u"+41-794999000"},
    {u"CN CHINA MOBILE", u"+86-1390591500"},
    {u"CN Telecom", u"+86-13800100500"},
    {u"CY CYTAGSM", u"+357-9700000"},
    {u"CZ EUROTEL GSM", u"+420-602909909"},
    {u"CZ PAEGAS", u"+420-603051"},
    {u"DE D1", u"+49-1715990000"},
    {u"DE D1 Talkline", u"+49-1710760900"},
    {u"DE D2 Talkline", u"+49-1722270258"},
    {u"DE D2 extern", u"+49-1722270333"},
    {u"DE D2 intern", u"+49-1722270000"},
    {u"DE debitel D1", u"+49-1710760333"},
    {u"DE Debitel", u"+49-1722270222"},
    {u"DE Dr Materna", u"+49-1722270111"},
    {u"DE E-Plus", u"+49-1770600000"},
    {u"DE E-Plus", u"+49-1770610000"},
    {u"DE E-Plus", u"+49-1770620000"},
    {u"DE IC3S", u"+49-1722270201"},
    {u"DE T-D1", u"+49-1710760000"},
    {u"DE VIAG Interkom ", u"+49-1760000443"},
    {u"DK Free!", u"+45-40590006"},
    {u"DK mobilix", u"+45-26265151"},
    {u"DK SONOFON", u"+45-40590000"},
    {u"DK TDK-MOBIL", u"+45-40390999"},
    {u"DK TELIA DK", u"+45-28187000"},
    {u"EE EMT GSM", u"+372-5099000"},
    {u"EE RADIOLINJA EESTI", u"+372-568771010"},
    {u"EE Ritabell", u"+372-5509911"},
    {u"EG CLICK GSM", u"+20-105996500"},
    {u"EG MobiNil", u"+20-122000020"},
    {u"ES Airtel", u"+34-607003110"},
    {u"ES AIRTEL", u"+34-607133000"},
    {u"ES Amena", u"+34-656000311"},
    {u"ES MoviStar", u"+34-609090909"},
    {u"FI Radiolinja", u"+358-508771010"},
    {u"FI SONERA", u"+358-405202000"},
    {u"FR BOUYGUES TELECOM", u"+33-660003000"},
    {u"FR Itineris", u"+33-689004000"},
    {u"FR Itineris", u"+33-689004431"},
    {u"FR Itineris", u"+33-68900458"},
    {u"FR SFR", u"+33-609001390"},
    {u"GR COSMOTE", u"+30-97100000"},
    {u"GR PANAFON", u"+30-94219000"},
    {u"GR TELESTET", u"+30-93597000"},
    {u"GR TELESTET", u"+30-93599000"},
    {u"HK HK Telecom", u"+852-90288000"},
    {u"HK Hutchinson", u"+852-94985795"},
    {u"HK Smartone", u"+852-90100000 "},
    {u"HR CRONET", u"+385-980501"},
    {u"HR VIP-NET", u"+385-910401"},
    {u"HU PANNON GSM", u"+36-209300099"},
    {u"HU Vodafone", u"+36-709996500"},
    {u"HU WESTEL", u"+36-30-9888-000"},
    {u"ID Exelcomindo", u"+62-818445009"},
    {u"ID Satelindo", u"+62-81615"},
    {u"ID Telkomsel", u"+62-81100000"},
    {u"IL Orange", u"+972-54-120032"},
    {u"IN BPL Mobile", u"+91-9821000005"},
    {u"IN Command", u"+91-9830099990"},
    {u"IN Essar Cellphone", u"+91-9811009998"},
    {u"IN MAXtouch", u"+91-9820005446"},
    {u"IN Tata", u"+91-9848001104"},
    {u"IR EIRCELL-GSM", u"+353-87699989"},
    {u"IR ESat Digifone", u"+353-868002000"},
    {u"IS LANDSSIMINN", u"+354-8900100"},
    {u"IS TAL", u"+354-6999099"},
    {u"IT Omni", u"+39-3492000200"},
    {u"IT Omni", u"+39-3492000300"},
    {u"IT Omni", u"+39-3492000400"},
    {u"IT Omni", u"+39-3492000500"},
    {u"IT TIM", u"+39-3359608000"},
    {u"IT TIM", u"+39-3359609600"},
    {u"IT TIM", u"+39-338960960"},
    {u"IT TIM", u"+39-338980000"},
    {u"IT Wind ", u"+39-3205858500"},
    {u"KW Kuwait", u"+96596000303"},
    {u"LB Lebancell", u"+961-3488888"},
    {u"LT BITE GSM", u"+370-9950115"},
    {u"LT OMNITEL", u"+370-9899992"},
    {u"LU LUXGSM", u"+352-021100003"},
    {u"LU TANGO", u"+352-091000030"},
    {u"LV Baltcom GSM", u"+371-9599994"},
    {u"LV LMT", u"+371-9202020"},
    {u"Lesotho Vodacom", u"+266"},
    {u"MK Macedonia", u"+389-70000501"},
    {u"MK MobiMak", u"+389-70"},
    {u"ML go mobile", u"+356-79700003"},
    {u"ML Vodafone", u"+356-941816"},
    {u"MU EMTEL", u"+230 7290999"},
    {u"MY ADAM", u"+60-173600010"},
    {u"MY Celcom", u"+60-193900000"},
    {u"MY Maxis", u"+60-120000015"},
    {u"MY Mutiara", u"+60-162999000"},
    {u"NA MTC", u"+264-81"},
    {u"NL Ben NL", u"+31-624000000"},
    {u"NL Dutchtone NV", u"+31-628500561"},
    {u"NL KPN Mobile", u"+31-653131313"},
    {u"NL Libertel-Vodaphone", u"+31-6540881000"},
    {u"NL TELFORT", u"+31-626000230"},
    {u"NO NetCom", u"+47-9208977"},
    {u"NO NetCom GSM", u"+47-92001000"},
    {u"NO TELENOR", u"+47-90002100"},
    {u"NO TeleNor", u"+47-90007777"},
    {u"NZ Vodafone", u"+64-21600600"},
    {u"PH Globe", u"+63-91702"},
    {u"PH Globe", u"+63-91703"},
    {u"PH Globe", u"+63-91704"},
    {u"PH Globe", u"+63-91709"},
    {u"PH Islacom", u"+63-9150200003"},
    {u"PH Smart", u"+63-9180000101"},
    {u"PL Era", u"+48-602951111"},
    {u"PL Era GSM", u"+48-602951112"},
    {u"PL IDEA Centertel", u"+48-501200777"},
    {u"PL Plus GSM", u"+48-601000310"},
    {u"PL Polkomtel", u"+48-601000311"},
    {u"PR OPTIMUS", u"+351-93121314"},
    {u"PR TELECEL", u"+351-911616161"},
    {u"PR TMN", u"+351-936210000"},
    {u"RO dialog", u"+40-94946000"},
    {u"RO CONNEX GSM", u"+40-92004000"},
    {u"RU BeeLine GSM", u"+7-90173100"},
    {u"RU MTS", u"+7-0957699100"},
    {u"RU North-West GSM", u"+7-8129600096"},
    {u"SA MTN", u"+27-831000002"},
    {u"SA Vodacom", u"+27-829119"},
    {u"SA Vodacom", u"+27-829129"},
    {u"SE COMVIQ", u"+46-707990001"},
    {u"SE Comviq", u"+46-707773078"},
    {u"SE Comviq", u"+46-707990002"},
    {u"SE Comviq", u"+46-707990003"},
    {u"SE EUROPOLITAN", u"+46-708000708"},
    {u"SE TELIA MOBILE", u"+46-705008999"},
    {u"SG Mobile One", u"+65-96845999"},
    {u"SG SingTel", u"+65-96197777"},
    {u"SG SingTel", u"+65-96400001"},
    {u"SG SingTel", u"+65-96500001"},
    {u"SG SingTel", u"+65-98189999"},
    {u"SK EUROTEL GSM", u"+421-903333000"},
    {u"SK GLOBTEL", u"+421-905303303"},
    {u"SV MOBITEL GSM", u"+386-41001333"},
    {u"SV SI.MOBIL", u"+386-40441000"},
    {u"TH AIS", u"+66-18110888"},
    {u"TH WP1800", u"+66-16110400"},
    {u"TR TELSiM GSM", u"+90-5429800033"},
    {u"TR Turkcell Iletisim Hizmetleri A.S.", u"+90-5329010000"},
    {u"TW Chung Wa Tele", u"+886-932400821"},
    {u"UA GOLDEN TELCOM", u"+380-444990000"},
    {u"UA KYVISTAR", u"+380-672020000"},
    {u"UA KYVISTAR", u"+380-672021111"},
    {u"UA UMC", u"+380-50000501"},
    {u"UK BT CELLNET", u"+44-7802000332"},
    {u"UK CellNet", u"+44-802000332"},
    {u"UK Guernsey Telecoms", u"+44-4481/7781"},
    {u"UK Jersey Telecom", u"+44-9797"},
    {u"UK One 2 One", u"+44-7958879879"},
    {u"UK Orange", u"+44-7973100973"},
    {u"UK Orange internal", u"+44-973100974"},
    {u"UK PRONTO", u"+44-7624499955"},
    {u"UK VODAFONE", u"+44-7785016005"},
    {u"UK Virgin Mobile", u"+44-7958879890"},
    {u"UK Vodafone", u"+44-385016005"},
    {u"UK WellOM", u"+380-442517777"},
    {u"US Aerial Comms", u"+1-2812350025"},
    {u"US Aerial Comms", u"+1-8132630025"},
    {u"US AT&T Wireless", u"+1-9078319301"},
    {u"US Cingular Wireless", u"+1-2099042010"},
    {u"US DigiPH PCS", u"+1-3342090307"},
    {u"US Omnipoint", u"+1-9179070004"},
    {u"US POWERTEL PCS INC", u"+1-3343338200"},
    {u"US Pacific Bell", u"+1-2099042020"},
    {u"US Sprint", u"+1-7044100000"},
    {u"US VOICESTREAM", u"+1-2063130004"},
    {u"US Washington PCS", u"+1-410258953"},
    {u"YU MobTel", u"+381-63100100"},
    {u"YU MobTel", u"+381-63100200"},
    {u"YU MobTel", u"+381-63100300"},
    {u"YU MobTel", u"+381-63100400"},
    {u"YU Telekom Srbija", u"+381-650000900"},
    {u"ZW Econet Wireless", u"+263-91010030"},
};

} // namespace

std::span<const FactoryServiceCentre> factoryServiceCentres() {
    return kFactoryServiceCentres;
}

GSM::ServiceCentreList* serviceCentreList() {
    GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences();
    return preferences ? preferences->serviceCentres() : nullptr;
}

void restoreFactoryServiceCentres(GSM::ServiceCentreList& list) {
    list.removeAll();
    for (const FactoryServiceCentre& row : factoryServiceCentres())
        list.add(row.name, row.number);
}

QString serviceCentreText(int index, const GSM::ServiceCentreEntry& entry) {
    if (index == 0)
        return fromWide(entry.name());
    return fromWide(entry.name()) + QStringLiteral(" (") + fromWide(entry.number()) +
           QStringLiteral(")");
}

void fillServiceCentreCombo(ComboBox& combo, GSM::ServiceCentreList* list) {
    combo.resetContent();
    if (!list)
        return;
    if (list->isEmpty()) {
        restoreFactoryServiceCentres(*list);
        list->commit(false);
    }
    for (int index = 0; index < list->count(); ++index) {
        const GSM::ServiceCentreEntry* entry = list->get(index);
        if (!entry)
            continue;
        if (combo.addString(serviceCentreText(index, *entry)) < 0)
            break;
    }
    combo.setCurSel(list->preferred());
}

} // namespace tessaly::sms

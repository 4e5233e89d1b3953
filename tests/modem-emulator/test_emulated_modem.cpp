#include "modem-emulator/emulated_modem.h"

#include <gtest/gtest.h>

#include <string>

namespace {

namespace modem = tessaly::modem;
namespace pdu = tessaly::pdu;

// The host's side of the AT port: sends a line, collects what the modem answered.
class Host {
public:
    Host()
        : modem_([this](std::string_view bytes) { answer_ += bytes; }) {
        at("ATE0");
    }
    std::string at(const std::string& line) {
        answer_.clear();
        modem_.receive(line + "\r");
        return answer_;
    }
    std::string raw(const std::string& bytes) {
        answer_.clear();
        modem_.receive(bytes);
        return answer_;
    }
    std::string collected() const { return answer_; }
    modem::EmulatedModem& modem() { return modem_; }

    // +CMGS with a SUBMIT of `text` to `to`; answers the modem's final response.
    std::string send(std::u16string_view to, std::u16string_view text, bool withCentre = false) {
        const auto submits = pdu::makeSubmits(text, pdu::Address::fromText(to), 1);
        pdu::SmsPdu full{std::nullopt, submits->front()};
        if (withCentre)
            full.serviceCentre = pdu::Address::fromText(u"+4917100000");
        const pdu::Bytes bytes = *pdu::encodeWithServiceCentre(full);
        const std::size_t length = bytes.size() - *pdu::serviceCentreLength(bytes);
        const std::string prompt = at("AT+CMGS=" + std::to_string(length));
        EXPECT_EQ(prompt, "\r\n> ");
        return raw(pdu::toHex(bytes) + "\x1a");
    }

private:
    std::string answer_;
    modem::EmulatedModem modem_;
};

const pdu::Timestamp kTime{2026, 11, 23, 18, 30, 0, 4};

struct ProbeCase {
    const char* command;
    const char* answer; // the whole answer
};

class Probe : public ::testing::TestWithParam<ProbeCase> {};

TEST_P(Probe, AnswersAsAModemDoes) {
    Host host;
    EXPECT_EQ(host.at(GetParam().command), GetParam().answer) << GetParam().command;
}

INSTANTIATE_TEST_SUITE_P(
    Table, Probe,
    ::testing::Values(
        ProbeCase{"AT", "\r\nOK\r\n"}, ProbeCase{"ATE0V1", "\r\nOK\r\n"},
        ProbeCase{"at&c1", "\r\nOK\r\n"},
        ProbeCase{"ATI", "\r\nTessaly Emulated GSM modem\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CGMI", "\r\nTessaly\r\n\r\nOK\r\n"},
        ProbeCase{"AT+GMM", "\r\nEmulated GSM modem\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CGMR", "\r\n1.0\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CGSN", "\r\n350000000000006\r\n\r\nOK\r\n"},
        ProbeCase{"AT+GCAP", "\r\n+GCAP: +CGSM\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CPIN?", "\r\n+CPIN: READY\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CIMI", "\r\n001010123456789\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CCID", "\r\n+CCID: 89000000000000000001\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CREG?", "\r\n+CREG: 0,1\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CFUN?", "\r\n+CFUN: 1\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CSQ", "\r\n+CSQ: 20,99\r\n\r\nOK\r\n"},
        ProbeCase{"AT+COPS?", "\r\n+COPS: 0,0,\"Tessaly Net\",0\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CMGF=?", "\r\n+CMGF: (0)\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CMGF=1", "\r\nERROR\r\n"}, ProbeCase{"AT+CMGF=0", "\r\nOK\r\n"},
        ProbeCase{"AT+CSCA?", "\r\n+CSCA: \"+4917100000\",145\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CPMS?", "\r\n+CPMS: \"SM\",0,25,\"SM\",0,25,\"SM\",0,25\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CPMS=\"ME\",\"ME\",\"SM\"", "\r\n+CPMS: 0,25,0,25,0,25\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CPMS=\"XX\"", "\r\nERROR\r\n"}, ProbeCase{"AT+CNMI=2,1,2,1,0", "\r\nOK\r\n"},
        ProbeCase{"AT+CMGR=5", "\r\nERROR\r\n"}, ProbeCase{"AT+XYZZY", "\r\nERROR\r\n"},
        ProbeCase{"ATD123;", "\r\nERROR\r\n"}, ProbeCase{"hello", "\r\nERROR\r\n"},
        ProbeCase{"AT+CMEE=1;+CREG=2;+CREG?", "\r\n+CREG: 2,1\r\n\r\nOK\r\n"},
        ProbeCase{"AT+CMEE=1;+CMGR=5", "\r\n+CMS ERROR: 321\r\n"}),
    [](const auto& info) { return "case" + std::to_string(info.index); });

TEST(Modem, EchoesUntilToldNot) {
    std::string answer;
    modem::EmulatedModem modem([&answer](std::string_view bytes) { answer += bytes; });
    modem.receive("AT\r");
    EXPECT_EQ(answer, "AT\r\r\nOK\r\n");
    answer.clear();
    modem.receive("ATE0\r");
    modem.receive("AT\r\n");
    EXPECT_EQ(answer, "ATE0\r\r\nOK\r\n\r\nOK\r\n");
}

TEST(Modem, SendsAPduAndRecordsIt) {
    Host host;
    for (bool withCentre : {false, true}) {
        EXPECT_EQ(host.send(u"+4917012345", u"Hello {world} €", withCentre),
                  withCentre ? "\r\n+CMGS: 1\r\n\r\nOK\r\n" : "\r\n+CMGS: 0\r\n\r\nOK\r\n");
    }
    ASSERT_EQ(host.modem().sent().size(), 2u);
    const modem::SentMessage& sent = host.modem().sent().back();
    EXPECT_EQ(sent.submit.destination.text(), u"+4917012345");
    EXPECT_EQ(sent.submit.userData.text, u"Hello {world} €");
    EXPECT_EQ(sent.serviceCentre->text(), u"+4917100000");
    EXPECT_FALSE(host.modem().sent().front().serviceCentre);
}

TEST(Modem, RefusesAPduOfTheWrongLengthAndCancelsOnEscape) {
    Host host;
    host.at("AT+CMEE=1");
    EXPECT_EQ(host.at("AT+CMGS=5"), "\r\n> ");
    EXPECT_EQ(host.raw("0011000B916407281553F80000AA0AE8329BFD4697D9EC37\x1a"),
              "\r\n+CMS ERROR: 304\r\n");
    EXPECT_EQ(host.at("AT+CMGS=5"), "\r\n> ");
    EXPECT_EQ(host.raw("00\x1b"), "\r\nOK\r\n");
    EXPECT_EQ(host.at("AT+CMGS=2"), "\r\n> ");
    EXPECT_EQ(host.raw("00ZZZZ\x1a"), "\r\n+CMS ERROR: 304\r\n");
    EXPECT_TRUE(host.modem().sent().empty());
    EXPECT_EQ(host.at("AT"), "\r\nOK\r\n");
    host.modem().failNextSend(38);
    EXPECT_EQ(host.send(u"+1", u"refused"), "\r\n+CMS ERROR: 38\r\n");
    EXPECT_EQ(host.send(u"+1", u"accepted"), "\r\n+CMGS: 0\r\n\r\nOK\r\n");
}

TEST(Modem, AnnouncesListsReadsAndDeletesDeliveredMessages) {
    Host host;
    EXPECT_EQ(host.modem().deliverText(u"+4915112345", u"quiet", kTime), std::vector<int>{1});
    EXPECT_EQ(host.collected().find("+CMTI"), std::string::npos) << "not asked for yet";
    host.at("AT+CNMI=2,1,2,1,0");
    host.raw("");
    EXPECT_EQ(host.modem().deliverText(u"+4915112345", u"Grüße 😀", kTime), std::vector<int>{2});
    EXPECT_EQ(host.collected(), "\r\n+CMTI: \"SM\",2\r\n");

    const std::string read = host.at("AT+CMGR=2");
    ASSERT_TRUE(read.starts_with("\r\n+CMGR: 0,,")) << read;
    const std::string hex =
        read.substr(read.find("\r\n", 2) + 2, read.find("\r\n\r\nOK") - read.find("\r\n", 2) - 2);
    const auto decoded = pdu::decodeWithServiceCentre(*pdu::fromHex(hex));
    ASSERT_TRUE(decoded) << decoded.error;
    const auto& deliver = std::get<pdu::Deliver>(decoded->tpdu);
    EXPECT_EQ(deliver.userData.text, u"Grüße 😀");
    EXPECT_EQ(deliver.originator.text(), u"+4915112345");
    EXPECT_EQ(deliver.serviceCentreTime, kTime);
    EXPECT_TRUE(host.at("AT+CMGR=2").starts_with("\r\n+CMGR: 1,,")) << "read now";

    const std::string unread = host.at("AT+CMGL=0");
    EXPECT_NE(unread.find("+CMGL: 1,0,,"), std::string::npos);
    EXPECT_EQ(unread.find("+CMGL: 2,"), std::string::npos);
    const std::string all = host.at("AT+CMGL=4");
    EXPECT_NE(all.find("+CMGL: 1,1,,"), std::string::npos);
    EXPECT_NE(all.find("+CMGL: 2,1,,"), std::string::npos);

    EXPECT_EQ(host.at("AT+CMGD=1"), "\r\nOK\r\n");
    EXPECT_EQ(host.at("AT+CMGD=1"), "\r\nOK\r\n") << "an empty slot deletes quietly";
    EXPECT_EQ(host.at("AT+CMGR=1"), "\r\nERROR\r\n");
    EXPECT_EQ(host.modem().storedCount("SM"), 1);
    EXPECT_EQ(host.at("AT+CMGD=1,4"), "\r\nOK\r\n");
    EXPECT_EQ(host.modem().storedCount("SM"), 0);
}

TEST(Modem, AnnouncesOneMessageAtATime) {
    Host host;
    host.at("AT+CNMI=2,1,2,1,0");
    host.raw("");
    EXPECT_EQ(host.modem().deliverText(u"+1", std::u16string(200, u'x'), kTime),
              (std::vector<int>{1, 2}));
    EXPECT_EQ(host.collected(), "\r\n+CMTI: \"SM\",1\r\n");
    host.modem().tick();
    EXPECT_EQ(host.collected(), "\r\n+CMTI: \"SM\",1\r\n") << "1 is not read yet";
    host.at("AT+CMGR=1");
    host.raw("");
    host.modem().tick();
    EXPECT_EQ(host.collected(), "\r\n+CMTI: \"SM\",2\r\n");
    host.raw("");
    for (int i = 0; i < 10; ++i)
        host.modem().tick();
    EXPECT_EQ(host.collected(), "\r\n+CMTI: \"SM\",2\r\n") << "announced again";
}

TEST(Modem, LongTextsArriveInConcatenatedParts) {
    Host host;
    const std::u16string text(200, u'x');
    EXPECT_EQ(host.modem().deliverText(u"Bank", text, kTime), (std::vector<int>{1, 2}));
    const std::string all = host.at("AT+CMGL=4");
    std::u16string joined;
    for (std::size_t at = all.find("+CMGL: "); at != std::string::npos;
         at = all.find("+CMGL: ", at + 1)) {
        const std::size_t start = all.find("\r\n", at) + 2;
        const auto decoded = pdu::decodeWithServiceCentre(
            *pdu::fromHex(all.substr(start, all.find("\r\n", start) - start)));
        ASSERT_TRUE(decoded);
        const auto& deliver = std::get<pdu::Deliver>(decoded->tpdu);
        EXPECT_EQ(deliver.userData.concatenation->total, 2);
        EXPECT_EQ(deliver.originator.type, pdu::NumberType::Alphanumeric);
        joined += deliver.userData.text;
    }
    EXPECT_EQ(joined, text);
}

TEST(Modem, StorageFillsUpAndStoredMessagesCanBeSent) {
    modem::Identity identity;
    identity.storageCapacity = 2;
    std::string answer;
    modem::EmulatedModem modem([&answer](std::string_view bytes) { answer += bytes; }, identity);
    pdu::Deliver message;
    message.originator = pdu::Address::fromText(u"+1");
    EXPECT_TRUE(modem.store(message, true));
    EXPECT_TRUE(modem.store(message, false));
    EXPECT_FALSE(modem.deliver(message)) << "full";

    modem.receive("ATE0\rAT+CMEE=1\rAT+CMGD=0,4\r");
    const auto submits = pdu::makeSubmits(u"stored", pdu::Address::fromText(u"+2"), 0);
    const std::string hex =
        pdu::toHex(*pdu::encodeWithServiceCentre({std::nullopt, submits->front()}));
    answer.clear();
    modem.receive("AT+CMGW=" + std::to_string(hex.size() / 2 - 1) + "\r" + hex + "\x1a");
    EXPECT_EQ(answer, "\r\n> \r\n+CMGW: 1\r\n\r\nOK\r\n");
    answer.clear();
    modem.receive("AT+CMSS=1\r");
    EXPECT_EQ(answer, "\r\n+CMSS: 0\r\n\r\nOK\r\n");
    ASSERT_EQ(modem.sent().size(), 1u);
    EXPECT_EQ(modem.sent()[0].submit.userData.text, u"stored");
    answer.clear();
    modem.receive("AT+CMSS=2\r");
    EXPECT_EQ(answer, "\r\n+CMS ERROR: 321\r\n");
}

} // namespace

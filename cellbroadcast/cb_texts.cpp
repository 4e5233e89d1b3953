#include "cellbroadcast/cb_texts.h"

#include "util/date_time_text.h"

namespace tessaly::sms {

QString cbOneLineText(const WCHAR* text) {
    if (!text)
        return {};
    QString line = QString::fromUtf16(text);
    line.replace(u'\n', u' ').replace(u'\r', u' ');
    qsizetype begin = 0;
    qsizetype end = line.size();
    while (begin < end && line[begin] == u' ')
        ++begin;
    while (end > begin && line[end - 1] == u' ')
        --end;
    return line.mid(begin, end - begin);
}

QString tickerItemText(const GSM::CbMessage& message) {
    if (!message.messageText())
        return {};
    return QStringLiteral("%1 (%2) %3")
        .arg(message.channel())
        .arg(FormatListDate(message.time(), false), cbOneLineText(message.messageText()));
}

std::vector<TickerItem> tickerItems(const GSM::CbFolder& folder, int emphasisChannel) {
    std::vector<TickerItem> items;
    const int last = folder.lastChannel();
    for (int channel = folder.firstChannel(); channel <= last; ++channel) {
        const CbMessagePtr message(folder.get(channel));
        if (message)
            items.push_back({tickerItemText(*message), channel == emphasisChannel});
    }
    return items;
}

} // namespace tessaly::sms

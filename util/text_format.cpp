#include "util/text_format.h"

namespace tessaly::sms {

QString formatText(const QString& format, const QStringList& values) {
    QString result;
    result.reserve(format.size());
    qsizetype next = 0;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QChar c = format.at(i);
        if (c != u'%' || i + 1 == format.size()) {
            result += c;
            continue;
        }
        const QChar field = format.at(i + 1);
        if (field == u'%') {
            result += u'%';
            ++i;
        } else if ((field == u'd' || field == u'i' || field == u'u' || field == u's') &&
                   next < values.size()) {
            result += values.at(next++);
            ++i;
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace tessaly::sms

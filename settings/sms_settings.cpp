#include "settings/sms_settings.h"

namespace {

constexpr std::array<SmsSettings::ColumnWidths, SmsSettings::kListCount> kDefaultColumnWidths{{
    {20, 80, 100, 40}, // Inbox: icon, From, Text, Date
    {20, 80, 100, 40}, // Outbox: icon, To, Text, Date
    {20, 60, 160, 0},  // cell broadcast: icon, Channel, Text, (no fourth column)
}};

bool isListIndex(int list) {
    return list >= 0 && list < SmsSettings::kListCount;
}

// Everything up to the first zero code unit: a zero inside the text would end it in the blob.
QStringView storableText(const QString& text) {
    const qsizetype zero = text.indexOf(QChar(u'\0'));
    return zero < 0 ? QStringView(text) : QStringView(text).left(zero);
}

class BlobWriter {
public:
    explicit BlobWriter(QByteArray& out)
        : out_(out) {}

    void putText(const QString& text) {
        for (const QChar unit : storableText(text))
            putUnit(unit.unicode());
        putUnit(0);
    }
    void putBool(bool value) { out_.append(char(value ? 1 : 0)); }
    void putInt32(std::int32_t value) {
        const auto bits = std::uint32_t(value);
        for (int shift = 0; shift < 32; shift += 8)
            out_.append(char((bits >> shift) & 0xff));
    }

private:
    void putUnit(char16_t unit) {
        out_.append(char(unit & 0xff));
        out_.append(char(unit >> 8));
    }

    QByteArray& out_;
};

class BlobReader {
public:
    explicit BlobReader(QByteArrayView blob)
        : blob_(blob) {}

    // Only whole code units are looked at: a lone byte at the end cannot be a terminator. With
    // no terminator the text keeps its value and the cursor stays where it was.
    void readText(QString& text) {
        for (qsizetype at = cursor_; at + 2 <= blob_.size(); at += 2) {
            if (unitAt(at) != 0)
                continue;
            text.resize((at - cursor_) / 2);
            for (qsizetype i = 0; i < text.size(); ++i)
                text[i] = QChar(unitAt(cursor_ + 2 * i));
            cursor_ = at + 2;
            return;
        }
    }

    void readBool(bool& value) {
        if (cursor_ >= blob_.size())
            return;
        value = blob_[cursor_++] != 0;
    }

    void readInt32(std::int32_t& value) {
        if (blob_.size() - cursor_ < 4)
            return;
        std::uint32_t bits = 0;
        for (int i = 0; i < 4; ++i)
            bits |= std::uint32_t(byteAt(cursor_ + i)) << (8 * i);
        value = std::int32_t(bits);
        cursor_ += 4;
    }

private:
    std::uint8_t byteAt(qsizetype at) const { return std::uint8_t(blob_[at]); }
    char16_t unitAt(qsizetype at) const { return char16_t(byteAt(at) | (byteAt(at + 1) << 8)); }

    QByteArrayView blob_;
    qsizetype cursor_ = 0;
};

} // namespace

void SmsSettings::setDefaults() {
    firstName.clear();
    lastName.clear();
    phone.clear();
    showProgress = true;
    insertSignature = true;
    insertGreeting = true;
    currentList = InboxList;
    columnWidths_ = kDefaultColumnWidths;
}

SmsSettings::ColumnWidths SmsSettings::columnWidths(int list) const {
    return columnWidths_[isListIndex(list) ? list : InboxList];
}

void SmsSettings::setColumnWidths(int list, const ColumnWidths& widths) {
    if (isListIndex(list))
        columnWidths_[list] = widths;
}

SmsSettings::ColumnWidths SmsSettings::defaultColumnWidths(int list) {
    return kDefaultColumnWidths[isListIndex(list) ? list : InboxList];
}

qsizetype SmsSettings::encodedSize() const {
    const auto textSize = [](const QString& text) { return (storableText(text).size() + 1) * 2; };
    return textSize(firstName) + textSize(lastName) + textSize(phone) + 3 + 4 +
           kListCount * kColumnCount * 4;
}

QByteArray SmsSettings::encode() const {
    QByteArray blob;
    blob.reserve(encodedSize());
    BlobWriter writer(blob);
    writer.putText(firstName);
    writer.putText(lastName);
    writer.putText(phone);
    writer.putBool(showProgress);
    writer.putBool(insertSignature);
    writer.putBool(insertGreeting);
    writer.putInt32(currentList);
    for (const ColumnWidths& group : columnWidths_)
        for (const std::int32_t width : group)
            writer.putInt32(width);
    return blob;
}

void SmsSettings::decode(QByteArrayView blob) {
    BlobReader reader(blob);
    reader.readText(firstName);
    reader.readText(lastName);
    reader.readText(phone);
    reader.readBool(showProgress);
    reader.readBool(insertSignature);
    reader.readBool(insertGreeting);
    reader.readInt32(currentList);
    for (ColumnWidths& group : columnWidths_)
        for (std::int32_t& width : group)
            reader.readInt32(width);
}

void SmsSettings::load(const std::function<QByteArray()>& readBlob) {
    if (loaded)
        return;
    setDefaults();
    if (readBlob)
        decode(readBlob());
    loaded = true;
}

bool SmsSettings::save(const std::function<bool(const QByteArray&)>& writeBlob) const {
    return writeBlob && writeBlob(encode());
}

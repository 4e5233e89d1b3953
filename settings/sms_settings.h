#pragma once

// The module's own settings record: signature, sending and template options, the list last
// shown and the column widths of the three lists. The telephony library keeps it as an opaque
// blob for the SMS service; this class only turns the record into that blob and back, so it can
// be tested and fuzzed without the library.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <cstdint>
#include <functional>

class SmsSettings {
public:
    static constexpr int kListCount = 3; // Inbox, Outbox, cell broadcast
    static constexpr int kColumnCount = 4;
    using ColumnWidths = std::array<std::int32_t, kColumnCount>;

    enum List : std::int32_t { InboxList = 0, OutboxList = 1, CellBroadcastList = 2 };

    // Fields in blob order.
    QString firstName;
    QString lastName;
    QString phone;
    bool showProgress = true;
    bool insertSignature = true;
    bool insertGreeting = true;
    std::int32_t currentList = InboxList;

    // True once a load was attempted, whatever its outcome; never part of the blob.
    bool loaded = false;

    SmsSettings() { setDefaults(); }

    // Puts every field of the blob back to its default; `loaded` is left alone.
    void setDefaults();

    // Widths of one list's columns; a list outside 0..2 reads the Inbox list's widths.
    ColumnWidths columnWidths(int list) const;
    // Replaces one list's widths; a list outside 0..2 is ignored.
    void setColumnWidths(int list, const ColumnWidths& widths);

    static ColumnWidths defaultColumnWidths(int list);

    // The blob: little-endian, no header, no padding. Strings are UTF-16 code units ending in
    // one zero unit; a string is written up to its first zero unit, so the blob stays readable.
    QByteArray encode() const;
    qsizetype encodedSize() const;

    // Reads a blob over the current values (callers set the defaults first). Fields the blob is
    // too short for keep their values; bytes after the last field are ignored.
    void decode(QByteArrayView blob);

    // The load-once rule, with the storage left to the caller: the first call sets the
    // defaults, decodes what readBlob returns (an empty blob means "nothing stored" or "read
    // failed") and marks the record loaded; every later call does nothing.
    void load(const std::function<QByteArray()>& readBlob);
    // Encodes the record and hands it to writeBlob; returns what writeBlob returns.
    bool save(const std::function<bool(const QByteArray&)>& writeBlob) const;

    friend bool operator==(const SmsSettings&, const SmsSettings&) = default;

private:
    std::array<ColumnWidths, kListCount> columnWidths_{};
};

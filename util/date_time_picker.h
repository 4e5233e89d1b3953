#pragma once

// The "DateTime Picker": a small box in which the person chooses a date or a time for a
// placeholder value. Its title names the variable; the title "Time" (the built-in variable's
// name) makes it a time picker, any other title a date picker. The chosen value comes back as
// the text that goes into the message: "14:05 " (with its trailing blank) for a time,
// " on 2003-05-17" (with its leading " on ") for a date.

#include "framework/ui/dialog.h"
#include "framework/win32types.h"

#include <QString>

#include <optional>

namespace tessaly::sms {

enum class DateTimePickerMode { Date, Time };

// Time only for the exact (case-sensitive) name of the built-in Time variable.
DateTimePickerMode dateTimePickerMode(const QString& title);

// The text a choice puts into the message.
QString dateTimePickerResult(DateTimePickerMode mode, const SYSTEMTIME& chosen);

// The group box caption in time mode: "Choose..." with its "..." made a blank, then the title
// ("Choose Time").
QString dateTimePickerTimeCaption(const QString& title);

class DateTimePickerDialog final : public Dialog {
public:
    // Control ids of the template.
    static constexpr int kDatePicker = 10002;
    static constexpr int kTimePicker = 10003;
    static constexpr int kGroupBox = 12003;

    // `result` receives the chosen text on OK and is left as it was on Cancel.
    DateTimePickerDialog(const QString& variable, QString& result, Dialog* parent = nullptr);

    DateTimePickerMode mode() const { return mode_; }

protected:
    bool onInitDialog() override;
    void onOK() override;

private:
    QString& result_;
    DateTimePickerMode mode_ = DateTimePickerMode::Date;
};

// Runs the picker modally for the variable; the chosen text, or nullopt when the person
// cancelled or the box could not be shown.
std::optional<QString> pickDateTimeValue(const QString& variable, Dialog* parent = nullptr);

} // namespace tessaly::sms

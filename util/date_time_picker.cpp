#include "util/date_time_picker.h"

#include "framework/resources/resources.h"
#include "framework/time/clock.h"
#include "resources/resource.h"

namespace tessaly::sms {

static_assert(DateTimePickerDialog::kDatePicker == IDC_DATETIME_DATE);
static_assert(DateTimePickerDialog::kTimePicker == IDC_DATETIME_TIME);
static_assert(DateTimePickerDialog::kGroupBox == IDC_DATETIME_GROUP);

DateTimePickerMode dateTimePickerMode(const QString& title) {
    const QString time = loadString(IDS_VAR_TIME);
    return !time.isEmpty() && title == time ? DateTimePickerMode::Time : DateTimePickerMode::Date;
}

QString dateTimePickerResult(DateTimePickerMode mode, const SYSTEMTIME& chosen) {
    if (mode == DateTimePickerMode::Time)
        return QString::asprintf("%02d:%02d ", chosen.wHour, chosen.wMinute);
    return loadString(IDS_DATE_ON) +
           QString::asprintf("%04d-%02d-%02d", chosen.wYear, chosen.wMonth, chosen.wDay);
}

QString dateTimePickerTimeCaption(const QString& title) {
    QString caption = loadString(IDS_CHOOSE);
    caption.replace(QStringLiteral("..."), QStringLiteral(" "));
    return caption + title;
}

DateTimePickerDialog::DateTimePickerDialog(const QString& variable, QString& result, Dialog* parent)
    : Dialog(IDD_DATETIME_PICKER, parent)
    , result_(result) {
    setPresentation(Presentation::PopUp);
    setTitle(variable);
}

bool DateTimePickerDialog::onInitDialog() {
    const SYSTEMTIME now = Clock::current().localNow();
    DateTimePicker* date = dateTimePicker(kDatePicker);
    DateTimePicker* time = dateTimePicker(kTimePicker);
    if (date)
        date->setSystemTime(now);
    if (time)
        time->setSystemTime(now);

    mode_ = dateTimePickerMode(title());
    if (mode_ == DateTimePickerMode::Time) {
        showItem(kTimePicker, true);
        showItem(kDatePicker, false);
        setItemText(kGroupBox, dateTimePickerTimeCaption(title()));
        setFocusItem(kTimePicker);
    } else if (date) {
        date->setFormat(QStringLiteral("yyyy-MM-dd"));
        setFocusItem(kDatePicker);
    }
    return false;
}

void DateTimePickerDialog::onOK() {
    const int shown = mode_ == DateTimePickerMode::Time ? kTimePicker : kDatePicker;
    DateTimePicker* picker = dateTimePicker(shown);
    if (!picker) {
        // A damaged template has nothing to read: treated as a cancel, the result untouched.
        endDialog(IDCANCEL);
        return;
    }
    result_ = dateTimePickerResult(mode_, picker->systemTime());
    endDialog(IDOK);
}

std::optional<QString> pickDateTimeValue(const QString& variable, Dialog* parent) {
    QString result;
    DateTimePickerDialog dialog(variable, result, parent);
    if (dialog.doModal() != IDOK)
        return std::nullopt;
    return result;
}

} // namespace tessaly::sms

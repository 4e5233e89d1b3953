// Draws every dialog template in English, German and the pseudo-language and finds each control
// whose text does not fit its rectangle. English and German must fit; the pseudo-language (40 %
// longer) only reports, to show where the next, longer translation will need room. The pictures
// and the reports go to the build folder's test output.

#include "resources/resource.h"
#include "resources/sms_resources.h"

#include "framework/resources/module_state.h"
#include "framework/ui/controls.h"
#include "framework/ui/dialog.h"
#include "tests/testkit/window_driver.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFile>
#include <QFontMetrics>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTextStream>

#include <gtest/gtest.h>

#include <climits>

namespace {

// Room a push button's frame takes on each side of its text.
constexpr int kButtonTextMargin = 3;
// Room a group box's frame takes before and after its title.
constexpr int kGroupTitleMargin = 8;

struct Overflow {
    int dialogId;
    int controlId;
    QString text;
    QSize needed;
    QSize available;

    QString toString() const {
        return QStringLiteral("dialog %1 control %2 \"%3\": needs %4x%5, has %6x%7")
            .arg(dialogId)
            .arg(controlId)
            .arg(text)
            .arg(needed.width())
            .arg(needed.height())
            .arg(available.width())
            .arg(available.height());
    }
};

// The size the control's text needs in its own font, or an invalid size for a control without
// a text of its own (edits, lists, owner-drawn buttons).
QSize neededSize(const QWidget& control) {
    const QFontMetrics metrics(control.font());
    if (const auto* label = qobject_cast<const tessaly::StaticLabel*>(&control)) {
        if (label->text().isEmpty())
            return {};
        // Labels wrap at their width; a word wider than the label still overflows.
        const QRect wrapped =
            metrics.boundingRect(QRect(0, 0, control.width(), INT_MAX),
                                 int(label->alignment()) | Qt::TextWordWrap, label->text());
        return wrapped.size();
    }
    if (qobject_cast<const QCheckBox*>(&control) || qobject_cast<const QRadioButton*>(&control)) {
        const auto& button = static_cast<const QAbstractButton&>(control);
        if (button.text().isEmpty())
            return {};
        return {control.sizeHint().width(), metrics.height()};
    }
    if (const auto* button = qobject_cast<const QPushButton*>(&control)) {
        if (button->text().isEmpty())
            return {};
        return {metrics.horizontalAdvance(QString(button->text()).remove(u'&')) +
                    2 * kButtonTextMargin,
                metrics.height()};
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(&control)) {
        if (group->title().isEmpty())
            return {};
        return {metrics.horizontalAdvance(group->title()) + 2 * kGroupTitleMargin,
                metrics.height()};
    }
    return {};
}

// Creates the template's window as the phone shows it; child pages sit in a sheet-sized host.
std::vector<Overflow> drawAndMeasure(const tessaly::DialogTemplate& dialogTemplate,
                                     const QString& picturePath) {
    QWidget host;
    host.resize(240, 320);
    tessaly::Dialog dialog(dialogTemplate);
    const bool child = dialogTemplate.styles.contains(QStringLiteral("WS_CHILD"));
    EXPECT_TRUE(dialog.create(child ? &host : nullptr)) << dialogTemplate.id;
    std::vector<Overflow> overflows;
    for (const tessaly::ControlTemplate& control : dialogTemplate.controls) {
        // Unnamed statics share the id -1: measure each widget by its place in the template.
        for (QWidget* widget :
             dialog.clientArea()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (dialog.itemId(widget) != control.id)
                continue;
            const QSize needed = neededSize(*widget);
            if (needed.isValid() &&
                (needed.width() > widget->width() || needed.height() > widget->height())) {
                const QString text = control.text;
                overflows.push_back({dialogTemplate.id, control.id, text, needed, widget->size()});
            }
            if (control.id != -1)
                break;
        }
    }
    if (child)
        host.grab().save(picturePath, "PNG");
    else
        tessaly::testkit::saveScreenshot(dialog, picturePath);
    dialog.destroyWindow();
    tessaly::testkit::pumpMessages();
    return overflows;
}

std::vector<Overflow> checkLanguage(const QString& language) {
    const tessaly::ResourceScript& script = tessaly::sms::resourcesFor(language);
    const tessaly::ModuleStateGuard guard(&script, nullptr);
    std::vector<Overflow> overflows;
    for (const auto& [id, dialogTemplate] : script.dialogs) {
        const QString picture = tessaly::testkit::testOutputPath(
            QStringLiteral("texts_fit/%1_%2.png").arg(language).arg(id));
        for (Overflow& overflow : drawAndMeasure(dialogTemplate, picture)) {
            // An unnamed static's template text may repeat; keep each once.
            if (std::find_if(overflows.begin(), overflows.end(), [&](const Overflow& seen) {
                    return seen.dialogId == overflow.dialogId &&
                           seen.controlId == overflow.controlId && seen.text == overflow.text;
                }) == overflows.end())
                overflows.push_back(std::move(overflow));
        }
    }
    QFile report(
        tessaly::testkit::testOutputPath(QStringLiteral("texts_fit/%1.txt").arg(language)));
    if (report.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        QTextStream out(&report);
        for (const Overflow& overflow : overflows)
            out << overflow.toString() << '\n';
    }
    return overflows;
}

TEST(WindowTextsFit, EnglishAndGermanTextsFitTheirControls) {
    for (const char* language : {"en", "de"}) {
        for (const Overflow& overflow : checkLanguage(QLatin1String(language)))
            ADD_FAILURE() << language << ": " << qPrintable(overflow.toString());
    }
}

TEST(WindowTextsFit, ThePseudoLanguageReportsWhatNoLongerFits) {
    ASSERT_EQ(tessaly::sms::resolvedLanguage("qps"), QStringLiteral("qps"));
    const std::vector<Overflow> overflows = checkLanguage(QStringLiteral("qps"));
    for (const Overflow& overflow : overflows)
        std::printf("qps: %s\n", qPrintable(overflow.toString()));
    RecordProperty("overflows", int(overflows.size()));
}

} // namespace

// Pictures of the composer for a person to look at (build/test-output/): a new message with
// greeting and signature, the details rows, and the favourites menu over the RECP button.

#include "compose_fixture.h"

#include "compose/favourites.h"
#include "framework/ui/menu.h"
#include "framework/ui/screen.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>

namespace {

using namespace compose_test;
namespace testkit = tessaly::testkit;

class ComposerPictures : public ComposeTest {};

TEST_F(ComposerPictures, NewMessageDetailsAndFavourites) {
    environment.record.firstName = QStringLiteral("Eva");
    environment.record.lastName = QStringLiteral("Lind");
    environment.record.insertGreeting = true;
    environment.record.insertSignature = true;
    tessaly::sms::Favourites::remember(QStringLiteral("0170 555 12"));
    tessaly::sms::Favourites::remember(QStringLiteral("Anna Berg:0160 111"));

    ComposerWindow* composer = newComposer();
    ASSERT_NE(composer, nullptr);
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TO, QStringLiteral("0160 111, 0170 555 12")));
    ASSERT_TRUE(testkit::type(*composer, IDC_COMPOSE_TEXT, QStringLiteral("see you at 8")));
    EXPECT_TRUE(testkit::saveScreenshot(*composer, testkit::testOutputPath("compose_new.png")));
    std::vector<int> pictures; // the Edit commands as picture buttons beside the Edit menu
    for (const QAction* action : composer->commandBar()->actions())
        if (!action->icon().isNull())
            pictures.push_back(action->data().toInt());
    EXPECT_EQ(pictures, (std::vector<int>{IDM_EDIT_CUT, IDM_EDIT_COPY, IDM_EDIT_PASTE}));

    // Emoji come from the input panel as whole characters, not key by key.
    composer->setItemText(IDC_COMPOSE_TEXT, QStringLiteral("🍕🇮🇹 or 🍣🇯🇵? 😀"));
    EXPECT_TRUE(testkit::saveScreenshot(*composer, testkit::testOutputPath("compose_emoji.png")));

    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_DOWN));
    EXPECT_TRUE(testkit::saveScreenshot(*composer, testkit::testOutputPath("compose_details.png")));
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_UP));

    // The favourites menu as the phone shows it, drawn over the composer below the button.
    user.chooseMenu(0);
    ASSERT_TRUE(testkit::click(*composer, IDC_COMPOSE_RECP));
    tessaly::MenuItem popup;
    for (const testkit::ShownMenuItem& shown : user.menus().back().items) {
        tessaly::MenuItem item;
        item.id = shown.id;
        item.text = shown.text;
        item.separator = shown.separator;
        popup.children.push_back(item);
    }
    QMenu menu;
    tessaly::fillQtMenu(menu, popup);
    menu.adjustSize();
    QImage picture = composer->window()->grab().toImage();
    {
        QPainter painter(&picture);
        const QRect button = composer->itemRect(IDC_COMPOSE_RECP);
        const QPoint corner =
            composer->clientArea()->mapTo(composer->window(), button.bottomRight());
        painter.drawPixmap(corner.x() - menu.width(), corner.y(), menu.grab());
    }
    const QString path = testkit::testOutputPath("compose_favourites.png");
    QDir().mkpath(QFileInfo(path).absolutePath());
    EXPECT_TRUE(picture.save(path));
}

} // namespace

#pragma once

// Windows built from dialog templates. A Dialog is created from a template id (modal doModal()
// or modeless create() + showWindow()); its controls are reached by id; commands and
// notifications come in through the virtual handlers below. Posted messages, timers and
// destroyWindow keep their platform meaning.

#include "framework/resources/module_state.h"
#include "framework/resources/resource_model.h"
#include "framework/ui/controls.h"
#include "framework/ui/useragent.h"
#include "framework/win32types.h"

#include <QPointer>
#include <QRect>
#include <QString>

#include <map>
#include <memory>
#include <vector>

class QPainter;
class QWidget;

// Window messages with a meaning of their own when posted to a window.
constexpr UINT WM_SETTINGCHANGE = 0x001a;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_CLOSE = 0x0010;

// Setting-change code sent when the input panel changes the space left to windows.
constexpr UINT SPI_SETSIPINFO = 224;

// Show commands.
constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOWNOACTIVATE = 4;
constexpr int SW_SHOW = 5;
constexpr int SW_SHOWNA = 8;

inline WORD LOWORD(std::uintptr_t value) {
    return WORD(value & 0xffff);
}

inline WORD HIWORD(std::uintptr_t value) {
    return WORD((value >> 16) & 0xffff);
}

namespace tessaly {

class CommandBar;
class DialogWindow;

// How a window appears on the phone screen.
enum class Presentation {
    FullScreen, // the whole 240x320 screen: title on top, command bar at the bottom
    PopUp,      // a box of the template's size with a title strip
    Child,      // embedded in its parent (property pages)
};

class Dialog {
public:
    explicit Dialog(int templateId, Dialog* parent = nullptr);
    explicit Dialog(const DialogTemplate& dialogTemplate, Dialog* parent = nullptr);
    virtual ~Dialog();

    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    int templateId() const { return template_.id; }
    const DialogTemplate& dialogTemplate() const { return template_; }
    // Before create(): FullScreen by default, Child for templates with WS_CHILD.
    void setPresentation(Presentation presentation) { presentation_ = presentation; }
    Presentation presentation() const { return presentation_; }
    // The parent window given at construction (may be nullptr).
    Dialog* parentDialog() const;

    // Runs the window modally through the UserAgent; returns the end code, or -1 when the
    // window could not be created.
    int doModal();
    // Creates the window and its controls and runs onInitDialog; the window stays hidden until
    // showWindow. parentWidget overrides the parent given at construction. Returns false when
    // the template does not exist or the window was destroyed during its initialisation.
    bool create(QWidget* parentWidget = nullptr);
    bool showWindow(int showCommand);
    // Destroys the window: onDestroy runs now; the widgets go and onPostDestroy runs once the
    // handler that called it (if any) has returned, so a window may destroy itself from its
    // own handlers, and onPostDestroy may delete the object.
    void destroyWindow();
    // Ends a modal run with the code (a modeless window is hidden).
    void endDialog(int code);
    bool isWindow() const;
    bool isVisible() const;
    bool isModalRunning() const { return modalRunning_; }
    bool hasEnded() const { return ended_; }
    int endCode() const { return endCode_; }

    // For UserAgent implementations: beginModal creates the window (hidden) for a modal run
    // and returns false when it cannot be created; the agent then shows it and waits until
    // hasEnded(); finishModal destroys the window and returns the end code (IDCANCEL when the
    // run ended without endDialog).
    bool beginModal();
    int finishModal();
    // Expires when the object is deleted.
    std::weak_ptr<int> aliveToken() const { return lifeToken_; }

    QString title() const { return title_; }
    void setTitle(const QString& title);
    // The top-level widget (the platform's window handle) and the area the controls live in.
    QWidget* window() const;
    QWidget* clientArea() const;
    QSize clientSize() const;

    // ---- controls by id ----
    QWidget* item(int id) const;
    template <typename Control> Control* itemAs(int id) const {
        return qobject_cast<Control*>(item(id));
    }
    int itemId(const QWidget* control) const;
    std::vector<int> itemIds() const;

    void setItemText(int id, const QString& text);
    QString itemText(int id) const;
    void setItemInt(int id, int value);
    int itemInt(int id, bool* ok = nullptr) const;
    void showItem(int id, bool show);
    bool isItemVisible(int id) const;
    void enableItem(int id, bool enable);
    bool isItemEnabled(int id) const;
    void checkItem(int id, int state);
    int isItemChecked(int id) const;
    // Checks checkId and unchecks the other buttons with ids first..last.
    void checkRadioButton(int firstId, int lastId, int checkId);
    void setFocusItem(int id);
    // The id of the control that has the focus, or 0.
    int focusItemId() const;
    // Geometry in client pixels.
    QRect itemRect(int id) const;
    void moveItem(int id, const QRect& rect);

    Edit* edit(int id) const { return itemAs<Edit>(id); }
    ListView* listView(int id) const { return itemAs<ListView>(id); }
    ComboBox* comboBox(int id) const { return itemAs<ComboBox>(id); }
    ListBox* listBox(int id) const { return itemAs<ListBox>(id); }
    ProgressBar* progressBar(int id) const { return itemAs<ProgressBar>(id); }
    UpDown* upDown(int id) const { return itemAs<UpDown>(id); }
    DateTimePicker* dateTimePicker(int id) const { return itemAs<DateTimePicker>(id); }
    StaticLabel* staticLabel(int id) const { return itemAs<StaticLabel>(id); }
    OwnerDrawButton* ownerDrawButton(int id) const { return itemAs<OwnerDrawButton>(id); }

    // ---- messages, commands and timers ----
    // Queues a message; it is handled on a later turn of the event loop, never inside this call.
    // WM_COMMAND reaches onCommand(LOWORD(wParam)); WM_SETTINGCHANGE onSettingChange; WM_CLOSE
    // onClose; everything else onMessage.
    bool postMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    // Delivers a command now, as a control or menu would.
    void sendCommand(int id);
    // Starts or restarts (same id) a timer whose ticks reach onTimer; returns id, or 0 without
    // a window or for id 0.
    UINT_PTR setTimer(UINT_PTR id, UINT elapseMs);
    bool killTimer(UINT_PTR id);

    // Creates the command bar of a full-screen window with a menu resource (0: empty bar).
    // Returns nullptr when the window is not full-screen or the menu does not exist.
    CommandBar* createCommandBar(int menuId = 0);
    CommandBar* commandBar() const;

    // Windows that exist now, in creation order.
    static std::vector<Dialog*> windows();
    // Whether the object is still alive (a Dialog not yet deleted).
    static bool exists(const Dialog* dialog);

protected:
    // The module state the window was made in: the framework delivers its events in it. Calls
    // that reach the window from elsewhere (the telephony library's events) enter it themselves.
    const ModuleState& moduleState() const { return createdIn_; }

    // Return true to let the framework give the focus to the first control that takes it.
    virtual bool onInitDialog() { return true; }
    // Commands of buttons, clickable labels, menus and the command bar. The default sends
    // IDOK to onOK and IDCANCEL to onCancel; an override passes on what it does not handle.
    virtual void onCommand(int id);
    virtual void onOK() { endDialog(IDOK); }
    virtual void onCancel() { endDialog(IDCANCEL); }
    virtual void onClose() { onCommand(IDCANCEL); }
    virtual void onTimer(UINT_PTR id) {}
    // Posted messages other than the ones with a meaning of their own (WM_APP and up).
    virtual void onMessage(UINT message, WPARAM wParam, LPARAM lParam) {}

    virtual void onEditChange(int id) {}
    virtual void onEditUpdate(int id) {}
    virtual void onEditSetFocus(int id) {}
    virtual void onEditKillFocus(int id) {}

    virtual void onListClick(int id, int row, int column) {}
    virtual void onListColumnClick(int id, int column) {}
    virtual void onListKeyDown(int id, int virtualKey) {}
    virtual void onListTapAndHold(int id, int row, QPoint screenPos) {}
    virtual void onListColumnWidthChanged(int id, int column, int width) {}

    virtual void onComboDropDown(int id) {}
    virtual void onComboCloseUp(int id) {}
    virtual void onComboSelChange(int id) {}
    virtual void onListBoxSelChange(int id) {}
    virtual void onUpDownChange(int id, int pos) {}
    virtual void onDateTimeChange(int id) {}

    virtual void onActivate(bool active) {}
    virtual void onSize(int clientWidth, int clientHeight) {}
    virtual void onSettingChange(UINT flag) {}
    // Paints the client background; return false to get the default (the window colour).
    virtual bool onEraseBackground(QPainter& painter, const QRect& rect) { return false; }
    // Paints an owner-drawn button; return false to get its images or default look.
    virtual bool onDrawItem(int id, QPainter& painter, const DrawItemState& state) { return false; }

    // The window is going: controls still exist.
    virtual void onDestroy() {}
    // The window is gone; a window that owns itself may delete itself here.
    virtual void onPostDestroy() {}

private:
    friend class DialogWindow;
    friend class CommandBar;
    friend class PropertySheet;

    struct Control {
        int id = -1;
        QWidget* widget = nullptr;
        const ControlTemplate* source = nullptr;
    };

    void buildWindow(QWidget* parentWidget);
    void createControls();
    QWidget* createControl(const ControlTemplate& control);
    void connectControl(int id, QWidget* widget);
    void uncheckRadioGroup(int id);
    void windowGone(DialogWindow* window);
    void stopAllTimers();
    // Runs a handler; a destroyWindow inside it finishes (onPostDestroy) once the outermost
    // handler has returned. Returns false when the object was deleted meanwhile.
    template <typename Handler> bool dispatch(Handler&& handler);
    // onPostDestroy in the module state the window was made in.
    void postDestroy();
    void handlePosted(UINT message, WPARAM wParam, LPARAM lParam);

    DialogTemplate template_;
    bool templateFound_ = true;
    Presentation presentation_ = Presentation::FullScreen;
    Dialog* parent_ = nullptr;
    std::shared_ptr<int> lifeToken_ = std::make_shared<int>(0);
    QString title_;
    // The module state in force when the window was made; its events run in it.
    ModuleState createdIn_;
    QPointer<DialogWindow> window_;
    std::vector<Control> controls_;
    std::map<int, size_t> controlIndex_;
    struct Timer {
        std::uint64_t handle = 0;
        const void* clock = nullptr;
    };
    std::map<UINT_PTR, Timer> timers_;
    int dispatchDepth_ = 0;
    bool postDestroyPending_ = false;
    bool destroying_ = false;
    bool modalRunning_ = false;
    bool ended_ = false;
    int endCode_ = 0;
};

// Sends a setting change to every window (posted: each handles it on a later loop turn).
void broadcastSettingChange(UINT flag);

} // namespace tessaly

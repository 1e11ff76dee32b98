#pragma once
// Base, the main window. It owns the library in memory and wires the menus,
// the list and the progress panel to the core; the work is the core's.
#include <QMainWindow>
#include <memory>

#include "library/library_state.h"
#include "platform/gstreamer/gst_duration_probe.h"
#include "playback/media_graph.h"
#include "shell/main_timer.h"
#include "tagedit/tag_edit_context.h"

class QTimer;

namespace sonorit {
struct AppState;
class StartupHost;
class UiPort;
}  // namespace sonorit

namespace sonorit::ui {

class LibraryController;
class ListSelection;
class MenuBar;
class PlaybackController;
class QtUiPort;
class TagPanelsView;
class TrackListModel;
class WindowGeometry;
class WindowShield;
class WindowStartupHost;

class Base : public QMainWindow {
public:
    // `graphs` plays the tracks; by default GStreamer into the desktop's
    // audio output.
    explicit Base(AppState& app, std::unique_ptr<MediaGraphFactory> graphs = nullptr);
    ~Base() override;

    UiPort& ui();
    StartupHost& startupHost();
    LibraryState& library() { return lib_; }
    PlaybackController& playback() { return *playback_; }
    // What the tag panels and the tag windows share.
    TagEditContext& tagEdit() { return *tagEdit_; }
    // The tag panels: their state, the routines' context and the buttons.
    TagPanelsView& tagPanels() { return *tagPanels_; }
    void Update_Menus();

protected:
    // A close from the title bar, the keyboard or the session ends the
    // program as Library > Exit does, unless a library operation is at work.
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // After a menu command: the menu states it asked for, without waiting
    // for the timer.
    void afterCommand();
    void exitProgram();

    AppState& app_;
    GstDurationProbe durations_;
    LibraryState lib_;
    std::unique_ptr<TrackListModel> model_;  // declared after lib_: it observes the list
    std::unique_ptr<ListSelection> selection_;  // after model_: it listens to the model
    std::unique_ptr<WindowShield> shield_;
    std::unique_ptr<QtUiPort> ui_;
    std::unique_ptr<LibraryController> libraryController_;
    std::unique_ptr<MenuBar> menus_;
    std::unique_ptr<PlaybackController> playback_;
    TagState tags_;
    std::unique_ptr<TagEditContext> tagEdit_;
    std::unique_ptr<TagPanelsView> tagPanels_;
    std::unique_ptr<WindowStartupHost> startupHost_;
    std::unique_ptr<WindowGeometry> geometry_;
    QTimer* geometrySave_;  // gathers the moves and resizes of a drag into one write
    QTimer* mainTimer_;
    MainTimer timerTicks_;
    MainTimerWork timerWork_;
};

}  // namespace sonorit::ui

#pragma once
// The main window under the offscreen platform with a private home, and the
// means to answer its modal windows from inside their own event loops.
#include <QTest>
#include <QtWidgets>
#include <deque>
#include <functional>
#include <gtest/gtest.h>

#include "platform/gstreamer/gst_media_graph.h"
#include "shell/session_log.h"
#include "shell/single_instance.h"
#include "shell/startup.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/temp_env.h"
#include "ui/base_window.h"

namespace sonorit::test {

inline QStringList column(const QAbstractItemModel* model, int col)
{
    QStringList values;
    for (int row = 0; row < model->rowCount(); ++row)
        values << model->index(row, col).data().toString();
    return values;
}

using ModalAnswer = std::function<void(QWidget*)>;

// Answers the modal windows as they come up, in order, from inside their own
// event loops. One that its answer did not close is rejected after a while, so
// that a fault fails the test instead of hanging it.
class ModalAnswerer {
public:
    explicit ModalAnswerer(std::deque<ModalAnswer> answers) : answers_(std::move(answers))
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (modal && !modal->property("answered").toBool() && !answers_.empty()) {
                modal->setProperty("answered", true);
                since_.start();
                const auto answer = answers_.front();
                answers_.pop_front();
                answer(modal);
            } else if (modal && since_.isValid() && since_.elapsed() > 3000) {
                QMetaObject::invokeMethod(modal, "reject");
            }
        });
        timer_.start(10);
    }
    bool done() const { return answers_.empty(); }

private:
    std::deque<ModalAnswer> answers_;
    QTimer timer_;
    QElapsedTimer since_;
};

// A message box answered with `button`; `seen` gets "title: text".
inline ModalAnswer pressButton(QStringList& seen, QMessageBox::StandardButton button)
{
    return [&seen, button](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        ASSERT_NE(box, nullptr) << modal->windowTitle().toStdString();
        seen << box->windowTitle() + ": " + box->text();
        box->button(button)->click();
    };
}

// Records the title and what Enter would press, then presses `button`.
inline ModalAnswer noteDefaultThenPress(QStringList& seen, QMessageBox::StandardButton button)
{
    return [&seen, button](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        ASSERT_NE(box, nullptr) << modal->windowTitle().toStdString();
        seen << box->windowTitle() + " default " + (box->defaultButton() ? box->defaultButton()->text() : "none");
        box->button(button)->click();
    };
}

// A file or folder dialog answered with `path`, typed as a user would:
// selectFile() leaves a focused name field alone. `seen` gets its title.
inline ModalAnswer typePath(QStringList& seen, const QString& path)
{
    return [&seen, path](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        ASSERT_NE(dialog, nullptr) << modal->windowTitle().toStdString();
        seen << dialog->windowTitle();
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    };
}

class BaseWindowTest : public ::testing::Test {
protected:
    // Library > Exit asks the application to quit, which outside its main
    // loop would end every later modal loop at once; the application's own
    // loop, run once, takes the request back.
    ~BaseWindowTest() override
    {
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
        QCoreApplication::exec();
    }

    TempEnv env;
    AppState state{env.paths()};
    // Tracks play in real time into a sink that needs no sound device.
    ui::Base base{state, std::make_unique<GstMediaGraphFactory>(QStringLiteral("fakesink"))};
    SingleInstance instance;
    SessionLog log;

    StartupResult start(const QString& commandLine)
    {
        return Run_Startup(state, base.ui(), base.startupHost(), instance, log, commandLine,
                           QCoreApplication::applicationFilePath());
    }
    template <typename T>
    T* find(const char* name) const { return base.findChild<T*>(name); }
    bool enabled(const char* action) const { return find<QAction>(action)->isEnabled(); }
    QTreeView* list() const { return find<QTreeView>("MP3_List"); }
    // Library menu and frame enabled, list shown, shield shown, progress box shown and enabled.
    const std::vector<bool> kIdle = {true, true, true, false, false, true};
    std::vector<bool> view() const
    {
        return {enabled("mnu_Library"), find<QGroupBox>("FrameLibrary")->isEnabled(), list()->isVisible(),
                find<QWidget>("LibShield")->isVisible(), find<QWidget>("ProgressBox")->isVisible(),
                find<QWidget>("ProgressBox")->isEnabled()};
    }
    void waitForMenuUpdate()
    {
        for (int i = 0; i < 200 && state.Menu_Refresh_Wanted; ++i)
            QTest::qWait(10);
    }
};

}  // namespace sonorit::test

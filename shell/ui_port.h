#pragma once
// The one door from the core to the person in front of the screen. The window
// program answers it with dialogs and the progress panel, the command-line
// front end with scripted answers, the tests with a recording double.
#include <QString>

namespace sonorit {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Icon { None, Information, Warning, Critical, Question };
enum class Answer { Ok, Cancel, Yes, No };

enum class FileDialogMode { Open = 1, Save = 2 };

struct FileDialogRequest {
    FileDialogMode mode = FileDialogMode::Open;
    QString title;
    QString fileName;
    QString filterDescription;  // "ZEV's MP3 Sonorit Library Files (*.vkt)"
    QString filterPattern;      // "*.vkt"
    QString startFolder;
    QString defaultExtension;   // without the dot
    bool multiSelect = false;
};

class UiPort {
public:
    virtual ~UiPort() = default;

    virtual Answer message(const QString& text, const QString& title, Buttons buttons, Icon icon) = 0;
    // A question whose button pressed by Enter is `defaultButton`: No for
    // every question whose Yes deletes or replaces a file or a library.
    // Ports without default buttons ask it as a message.
    virtual Answer question(const QString& text, const QString& title, Buttons buttons, Icon icon,
                            Answer defaultButton)
    {
        (void)defaultButton;
        return message(text, title, buttons, icon);
    }
    // Result as the file dialog helper delivers it: "" on cancel, one path, or
    // for several files "folder|name|name".
    virtual QString fileDialog(const FileDialogRequest& request) = 0;
    // "" on cancel.
    virtual QString browseForFolder() = 0;
    // An input box; the default text when nobody answers.
    virtual QString input(const QString& /*prompt*/, const QString& /*title*/, const QString& defaultText)
    {
        return defaultText;
    }

    // The window shielding protocol of long operations.
    virtual void lockMainWindow() {}
    virtual void unlockMainWindow() {}
    virtual void showProgress() {}
    virtual void shieldLibrary() {}
    virtual void unshieldLibrary() {}
    virtual void hideProgress() {}
    virtual void setLabel17(const QString&) {}
    virtual void setLabel18(const QString&) {}
    virtual void setProgressRange(int /*minimum*/, int /*maximum*/) {}
    virtual void setProgressValue(int) {}
    virtual void setCaption(const QString&) {}
    virtual void focusLibraryList() {}

    // Serve the toolkit's queue from inside a long loop.
    virtual void yield() {}
};

}  // namespace sonorit

#pragma once
// "Sonorit.log" in the data folder: rewritten at each start, one plain line
// per start-up step, open only during start-up.
#include <QFile>
#include <QString>

namespace sonorit {

class SessionLog {
public:
    void open(const QString& path);  // deletes the previous session's log first
    void line(const QString& text);
    void close();
    bool isOpen() const { return file_.isOpen(); }

private:
    QFile file_;
};

}  // namespace sonorit

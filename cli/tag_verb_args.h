#pragma once
// The arguments of the tag verbs: files and "--name value" options in any
// order, the same options for every file; behind "--" only files follow.
// Values are checked before any file is touched, so that a mistyped option
// changes nothing.
#include <QMap>
#include <QString>
#include <QStringList>

namespace sonorit::cli {

struct TagVerbArgs {
    QStringList files;
    QMap<QString, QString> options;  // by name without the dashes
};

// "" when the arguments are well formed; otherwise the reason, for the user.
QString Parse_Tag_Verb_Args(const QStringList& args, const QStringList& known, TagVerbArgs& out);

// A whole number in decimal digits from lowest to highest.
bool Is_Number_In(const QString& text, int lowest, int highest, int* value = nullptr);

}  // namespace sonorit::cli

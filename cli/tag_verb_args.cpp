#include "tag_verb_args.h"

#include <algorithm>

namespace sonorit::cli {

QString Parse_Tag_Verb_Args(const QStringList& args, const QStringList& known, TagVerbArgs& out)
{
    bool onlyFiles = false;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        if (onlyFiles || !a.startsWith(QLatin1String("--"))) {
            out.files << a;
            continue;
        }
        if (a == QLatin1String("--")) {
            onlyFiles = true;
            continue;
        }
        QString name = a.mid(2), value;
        const int eq = name.indexOf(QLatin1Char('='));
        if (eq >= 0) {
            value = name.mid(eq + 1);
            name.truncate(eq);
        } else if (i + 1 < args.size()) {
            value = args[++i];
        } else {
            return QStringLiteral("--%1 needs a value").arg(name);
        }
        if (!known.contains(name))
            return QStringLiteral("unknown option --%1").arg(name);
        out.options.insert(name, value);
    }
    return out.files.isEmpty() ? QStringLiteral("no file given") : QString();
}

bool Is_Number_In(const QString& text, int lowest, int highest, int* value)
{
    if (text.isEmpty() || text.size() > 9
        || !std::all_of(text.begin(), text.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }))
        return false;
    const int n = text.toInt();
    if (n < lowest || n > highest)
        return false;
    if (value)
        *value = n;
    return true;
}

}  // namespace sonorit::cli

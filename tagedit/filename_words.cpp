// The words of a file name and their runs, for the filename tagger's combos.
#include "tagedit/filename_tagger.h"

#include "tags/id3v1.h"

namespace sonorit {

namespace {
const QString kTwoBlanks = QStringLiteral("  ");

// One pass over the text; a blank doubled in the input comes out single.
QString cleanOnce(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar ch = text[i];
        if (ch == QLatin1Char('_') || ch == QLatin1Char('-')) {
            out += QLatin1Char(' ');
        } else if (ch == QLatin1Char('%')) {
            out += QLatin1Char(' ');
            if (text.mid(i, 3) == QLatin1String("%20"))
                i += 2;
        } else if (ch == QLatin1Char(' ') && i + 1 < text.size() && text[i + 1] == QLatin1Char(' ')) {
            out += QLatin1Char(' ');
            ++i;
        } else {
            out += ch;
        }
    }
    return out.trimmed();
}
}  // namespace

QString Clean_Filename(const QString& stem)
{
    // At least one pass, then as many as it takes: "a - b" needs two.
    QString text = cleanOnce(stem.trimmed());
    while (text.contains(kTwoBlanks))
        text = cleanOnce(text);
    return text;
}

QStringList Filename_Word_Runs(const QString& fileName)
{
    if (fileName.size() < 4)
        return {};
    const QString text = Clean_Filename(fileName.left(fileName.size() - 4));
    if (text.isEmpty())
        return {};
    const QStringList words = text.split(QLatin1Char(' '));
    QStringList runs;
    runs.reserve(words.size() * (words.size() + 1) / 2);
    for (qsizetype i = 0; i < words.size(); ++i) {
        QString run;
        for (qsizetype j = i; j < words.size(); ++j) {
            run += (j > i ? QStringLiteral(" ") : QString()) + words[j];
            runs << run;
        }
    }
    return runs;
}

QStringList Filename_Genre_Names()
{
    QStringList names = Genre_Names();
    names[149] = QStringLiteral("User defined");
    return names;
}

}  // namespace sonorit

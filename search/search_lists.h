#pragma once
// The three word lists of the search panel, collected while a library opens:
// distinct names without regard to case, in the order first seen.
#include <QSet>
#include <QString>
#include <QStringList>

namespace sonorit {

class DistinctNames {
public:
    void clear();
    void add(const QString& name);  // nothing for an empty name
    const QStringList& names() const { return names_; }
    int count() const { return static_cast<int>(names_.size()); }

private:
    QStringList names_;
    QSet<QString> lowered_;  // keeps each addition a hash probe, not a pass
};

struct SearchLists {
    DistinctNames Search_Artists;
    DistinctNames Search_Albums;
    DistinctNames Search_Titles;

    void Start_Search_Lists();
    void Add_Search_Artist(const QString& name) { Search_Artists.add(name); }
    void Add_Search_Album(const QString& name) { Search_Albums.add(name); }
    void Add_Search_Title(const QString& name) { Search_Titles.add(name); }
};

}  // namespace sonorit

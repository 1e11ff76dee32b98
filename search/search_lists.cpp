#include "search_lists.h"

namespace sonorit {

void DistinctNames::clear()
{
    names_.clear();
    lowered_.clear();
}

void DistinctNames::add(const QString& name)
{
    if (name.isEmpty())
        return;
    const QString key = name.toLower();
    if (lowered_.contains(key))
        return;
    lowered_.insert(key);
    names_.append(name);
}

void SearchLists::Start_Search_Lists()
{
    Search_Artists.clear();
    Search_Albums.clear();
    Search_Titles.clear();
}

}  // namespace sonorit

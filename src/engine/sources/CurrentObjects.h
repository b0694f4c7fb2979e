#pragma once

#include "collection/dCollection.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace halvane {

/// The keys under which resolved objects are filed.
enum class ObjectKey : std::uint8_t {
    DataFrame,
    FeatureLayer,
    FeatureClass,
    Workspace,
    Table,
    RelatedTable,
    TinLayer,
    Feature, ///< that a vertex belongs to
    Point,   ///< a vertex
};

/// The resolved host objects of the walk, keyed by kind. Objects are filed far more often than anyone looks:
/// they go into the collection when it is asked for, in the order in which they were filed last.
class CurrentObjects {
public:
    /// Files an object under its key, replacing an earlier one: the entry moves to the end. The object's
    /// owners are not counted anew when it is filed already.
    template<class Role>
    void keep(ObjectKey key, const std::shared_ptr<Role>& pObject) {
        Filed& filed = aFiled_[static_cast<std::size_t>(key)];
        if (filed.pObject.get() != static_cast<const Object*>(pObject.get()))
            filed.pObject = pObject;
        filed.nTurn = ++nTurn_;
    }

    /// The collection, everything filed. Whoever changes it changes what is filed.
    [[nodiscard]] dCollection& collection();
    /// Starts over with an empty collection.
    void clear();

private:
    struct Filed {
        ObjectPtr pObject;
        std::uint64_t nTurn = 0; ///< 0: nothing to file
    };

    void file();

    std::array<Filed, 9> aFiled_;
    std::uint64_t nTurn_ = 0;
    dCollectionPtr pCollection_;
};

} // namespace halvane

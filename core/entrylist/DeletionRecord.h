#pragma once

#include "model/Einnahme.h"

#include <cstddef>
#include <memory>

namespace saldo {

// The undo record of one deletion: the deleted entry objects themselves (not
// copies), in the order they were removed, so for several rows from the highest
// row to the lowest. Copies of a record share the one list: the same record
// travels from the deletion to the undo step, from the undo to the redo step
// and back, and `sameRecord` tells whether two handles are that one record.
class DeletionRecord {
public:
    DeletionRecord();
    explicit DeletionRecord(EinnahmeList entries);

    const EinnahmeList& entries() const { return *entries_; }
    std::size_t size() const { return entries_->size(); }
    bool empty() const { return entries_->empty(); }

    bool sameRecord(const DeletionRecord& other) const { return entries_ == other.entries_; }

private:
    std::shared_ptr<const EinnahmeList> entries_;
};

}  // namespace saldo

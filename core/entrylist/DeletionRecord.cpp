#include "entrylist/DeletionRecord.h"

namespace saldo {

DeletionRecord::DeletionRecord()
    : entries_(std::make_shared<const EinnahmeList>())
{
}

DeletionRecord::DeletionRecord(EinnahmeList entries)
    : entries_(std::make_shared<const EinnahmeList>(std::move(entries)))
{
}

}  // namespace saldo

// Documents through the envelope, the three forms and every object reader, without a store. The first byte chooses:
// a capital letter from A to M a batch of one of the readers below, a small one a single record, anything else a bare
// id. The rest is the document. What a reader accepts is also made a flat record and released.
#include "Fuzzer.h"
#include "Input.h"
#include "Library.h"
#include "Require.h"
#include "Walk.h"
#include "api/EventFlat.h"
#include "api/OrganizationFlat.h"
#include "api/SiteFlat.h"
#include "json/Documents.h"
#include "json/ObjectReaders.h"

using namespace brimlet;
using namespace brimlet::fuzz;

namespace {

template<class Record>
void flattenAndRelease(const std::vector<Record> &records)
{
    FlatOf<Record> *flats = flatArray(records);
    const auto count = static_cast<uint32_t>(records.size());
    walkList(flats, count);
    require(releaseArray<Record>(flats, count) == BRIMLET_DONE, "flat records are released whole");
}

bool isAnswer(BrimletResult code)
{
    return code == BRIMLET_DONE || code == BRIMLET_INCOMPLETE || code == BRIMLET_REFUSED;
}

template<class Record, class Keys>
void readAsBatch(const QString &text, ObjectReader<Record, Keys> fill)
{
    std::vector<Record> records;
    const BrimletResult code = readBatch(text, records, fill);
    require(isAnswer(code), "a reader answers 0, 5 or 10");
    require(code != BRIMLET_DONE || !records.empty(), "a batch that is accepted has records");
    flattenAndRelease(records);
}

template<class Record, class Keys>
void readAsOne(const QString &text, ObjectReader<Record, Keys> fill)
{
    std::optional<Record> record;
    const BrimletResult code = readOneRecord(text, record, fill);
    require(isAnswer(code), "a reader answers 0, 5 or 10");
    require(record.has_value() == (code == BRIMLET_DONE), "a record is there with 0 and only then");
    if (record)
        flattenAndRelease(std::vector<Record>{*record});
}

// Either form by one reader.
template<class Record, class Keys>
void read(const QString &text, bool isBatch, ObjectReader<Record, Keys> fill)
{
    if (isBatch)
        readAsBatch(text, fill);
    else
        readAsOne(text, fill);
}

void readId(const QString &text, size_t choice)
{
    static const char *const keys[] = {"id", "op_id", "domain_id", "org_id", "site_id", "device", "section", "zone"};
    quint32 id = 0;
    const BrimletResult code = readBareId(text, QLatin1String(keys[choice % std::size(keys)]), id);
    require(isAnswer(code), "a reader answers 0, 5 or 10");
    require(code == BRIMLET_DONE || id == 0, "an id is read with 0 and only then");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietly();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const Bytes document = Bytes{data, size}.behind(1);
    const Units units(document);
    const QString text = QString::fromUtf16(units.data(), static_cast<int>(units.length()));
    const bool isBatch = data[0] < 'a';
    switch (isBatch ? data[0] : data[0] - 'a' + 'A') {
    case 'A':
        read(text, isBatch, fillLocale);
        break;
    case 'B':
        read(text, isBatch, fillDomain);
        break;
    case 'C':
        read(text, isBatch, fillUser);
        break;
    case 'D':
        read(text, isBatch, fillPerson);
        break;
    case 'E':
        read(text, isBatch, fillOrganization);
        break;
    case 'F':
        read(text, isBatch, fillContractor);
        break;
    case 'G':
        read(text, isBatch, fillContract);
        break;
    case 'H':
        read(text, isBatch, fillZone);
        break;
    case 'I':
        read(text, isBatch, fillSection);
        break;
    case 'J':
        read(text, isBatch, fillDeviceUser);
        break;
    case 'K':
        read(text, isBatch, fillDevice);
        break;
    case 'L':
        read(text, isBatch, fillSite);
        break;
    case 'M':
        read(text, isBatch, fillEvent);
        break;
    default:
        readId(text, data[0]);
    }
    return 0;
}

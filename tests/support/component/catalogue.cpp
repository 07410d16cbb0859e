#include "TestItems.h"
#include "TestProbe.h"

#include "frame/automation/library_lifetime.h"
#include "frame/automation/table.h"

namespace orvane::automation {

const LibraryTable& libraryTable() {
    static const LibraryTable& table = permanent<LibraryTable>([] {
        return LibraryTable{
            {0x1B7C2F00, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}},
            "OrvTestComponent",
            1,
            0,
            u"Компонент для проверок",
            {&tests::TestProbe::table(), &tests::TestItems::table()},
            {&enumTable(tests::TestShape{})},
            {1, 0, 0, 0},
            u"1.00.0000",
            "OrvTestComponent"};
    });
    return table;
}

}  // namespace orvane::automation

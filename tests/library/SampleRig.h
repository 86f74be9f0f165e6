#pragma once

#include "library/Database.h"
#include "support/FakeHost.h"
#include "support/Recorders.h"
#include "support/Ts2Bytes.h"

namespace tessera::test {

// The sample database with the host and the picture file that belong to it.
struct SampleRig : JobRig {
    static constexpr const char* kName = "C:\\db\\sample.ts2";
    FakeHost host;
    Database database;
    bool linksDone = false;

    SampleRig()
    {
        for (const char16_t* name :
             {u"C:\\m\\a\\1.mp3", u"C:\\m\\a\\2.mp3", u"C:\\m\\b\\3.mp3", u"C:\\m\\c\\7.mp3"})
            host.tracks.emplace_back().fileName = name;
        files.files["C:\\m\\a\\folder.jpg"] = bytesOf("JPEG!");
    }
    bool read(const Bytes& bytes)
    {
        files.files[kName] = bytes;
        return database.read(kName, host, context, [this] { linksDone = true; });
    }
    // What a write of the library gives.
    Bytes written()
    {
        database.write("C:\\db\\again.ts2", context);
        return files.files["C:\\db\\again.ts2"];
    }
};

} // namespace tessera::test

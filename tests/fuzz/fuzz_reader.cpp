#include "support/FakeHost.h"
#include "support/Recorders.h"

#include <cstdlib>

using namespace tessera;
using namespace tessera::test;

namespace {

// Knows every file by the same object.
class EveryFile : public FakeHost {
public:
    HostFilePtr file(const std::string&) override { return m_file; }

private:
    class File : public HostFile {
        std::string text(FileText) override { return {}; }
        std::u16string wideText(FileText) override { return {}; }
        std::int32_t number(FileNumber) override { return 0; }
        std::string image(ImageKind) override { return {}; }
    };
    HostFilePtr m_file = std::make_shared<File>();
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// Gives each album with an image its bytes back as a picture file of its own; false when two
// albums share a name, which then cannot stand for both.
bool restorePictures(Library& library, FakeFiles& files)
{
    for (const auto& [id, album] : library.albums) {
        if (!album->has(kAlbumHasImage))
            continue;
        if (!files.files.emplace(album->thumbnailFile, album->m_hGlobalThumbnail).second)
            return false;
    }
    return true;
}

} // namespace

// A file either loads and is the same when written again, or one box says why not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    JobRig rig;
    EveryFile host;
    Database database;
    rig.files.files["in.ts2"].assign(data, data + size);
    const bool good = database.read("in.ts2", host, rig.context, {});
    require(rig.prompt.boxes.size() == (good ? 0u : 1u));
    if (!good)
        return 0;
    const Bytes whole = rig.files.files["in.ts2"];
    rig.files.files.clear();
    if (!restorePictures(database.library(), rig.files))
        return 0;
    require(database.write("out.ts2", rig.context));
    require(rig.files.files["out.ts2"] == whole);
    return 0;
}

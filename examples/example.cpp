// A first look at KORX from a translator's side: report through the event bus, mark a task,
// name files, hold text, match and parse it, and grow arrays. Build and run it with `./build.sh example`.
#include <korx/korx.h>

#include <cstdio>

namespace {

struct Face {
    int id;
    double area;
};

void readFaces(KORXDynamicArray<Face>& faces) {
    // An array grows by half its capacity plus one as faces arrive; copies share it.
    for (int id = 1; id <= 12; ++id)
        faces.add(Face{id, id * 1.5});
    KORXInfo::Tab();
    KORXInfo::Printf("%d faces in %d slots", faces.size(), faces.getHeader()->capacity);
    KORXInfo::Untab();
}

}  // namespace

int main() {
    // Messages go to standard output, warnings and errors to standard error; every error is
    // also kept by the tracker.
    KORXConsoleLogger::SetUp(KORX_LEVEL_INFO);
    KORXErrorTracker::Initialize();

    // A file name and its parts; stored paths keep the library's '\' separators.
    KORXFilePath input("models/bracket.stp");
    KORXInfo::Printf("file %s: name %s, extension %s", static_cast<const char*>(input.GetPath()),
                     static_cast<const char*>(input.GetName()),
                     static_cast<const char*>(input.GetLastExtension()));

    // A task: its start and end events bracket the work.
    KORXStartReadFileTaskEvent::Fire(static_cast<const char*>(input.GetPath()));
    KORXDynamicArray<Face> faces;
    readFaces(faces);
    KORXString label("Fl\xC3\xA4"
                     "che 7");  // UTF-8 in, UTF-16 inside
    KORXWarning::Printf("%s has %d UTF-16 units and %d UTF-8 bytes",
                        static_cast<const char*>(label), label.length(), label.GetLengthInChar());
    KORXError::Printf("face %d is not closed", faces[6].id);

    // A user's entity filter (without regard to case), an option name split at its dots, and
    // a number read from option text.
    const Gk_ROString entity("bracket/shell1/face7");
    KORXStringTokenizer parts("Write.Units.Length", u'.');
    Gk_StringParser tolerance(Gk_String("0.001"));
    KORXInfo::Printf("filter */SHELL?/face*: %s; %d name parts; tolerance %g",
                     entity.matchPathPattern("*/SHELL?/face*") ? "selected" : "not selected",
                     parts.GetTokenCount(), tolerance.isReal() ? tolerance.realValue() : 0.0);
    KORIResult done(0);
    KORXEndReadFileTaskEvent end(done);
    KORXEventBus::Fire(end);

    std::printf("errors seen: %d\n", KORXError::GetErrorCount());
    delete KORXErrorTracker::GetInstance();
    return 0;
}

#include <korx/KORXFilePath.h>
#include <korx/KORXTaskEvent.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>

#include "support/environment_guard.h"
#include "support/event_recorder.h"

namespace {

using Info = KORXEndConversionTaskEvent::KORXConvertedEntitiesInfo;

const std::string kRule(80, '-');

// The task identifier; an event without one fails and leaves the string as it was.
std::string IdentifierOf(const KORXTaskEvent& event) {
    KORXString identifier("none");
    const bool found = event.GetTaskIdentifier(identifier) == 0;
    return static_cast<const char*>(identifier) + std::string(found ? "" : " (failed)");
}

}  // namespace

TEST(TaskEvents, NamesIdentifiersLevelsAndKinds) {
    KORIResult r(0);
    KORXFilePath path("out.stp");
    constexpr KORXTaskEventKind S = KORX_TASK_START, E = KORX_TASK_END;
    using P = std::unique_ptr<KORXTaskEvent>;
    using Row = std::tuple<P, const char*, const char*, KORXTaskEventKind>;
    const Row cases[] = {
        {P(new KORXStartProductEvent("p", "a")), "Start Product", "Product", S},
        {P(new KORXEndProductEvent(r)), "Product End", "Product", E},
        {P(new KORXStartReadFileTaskEvent("in")), "KORXStartReadFileTaskEvent", "Read File", S},
        {P(new KORXEndReadFileTaskEvent(r)), "File Reading", "Read File", E},
        {P(new KORXStartReadEntitiesTaskEvent), "KORXStarReadEntitiesTaskEvent", "Read Entities",
         S},
        {P(new KORXEndReadEntitiesTaskEvent(r)), "Entity Reading", "Read Entities", E},
        {P(new KORXStartOptionsTaskEvent), "KORXStartOptionsTaskEvent", "Options", S},
        {P(new KORXEndOptionsTaskEvent(r)), "Options logging", "Options", E},
        {P(new KORXStartPreprocessDocumentEvent), "Start Document Preprocessing",
         "Document Preprocessing", S},
        {P(new KORXEndPreprocessDocumentEvent(r)), "Document Preprocessing",
         "Document Preprocessing", E},
        {P(new KORXStartConversionTaskEvent), "KORXStartConversionTaskEvent", "Conversion", S},
        {P(new KORXEndConversionTaskEvent(r, {})), "KORXEndConversionTaskEvent", "Conversion", E},
        {P(new KORXStartConversionStageEvent("F", 3, 1, 0)), "KORXStartConversionStageEvent",
         "none (failed)", S},
        {P(new KORXEndTranslationTaskEvent(r, 0)), "Translation", "Translation", E},
        {P(new KORXStartTranslateRepairEvent("F", "N", 1, KORX_LEVEL_INFO)),
         "KORXStartTranslateRepairEvent", "Repair", S},
        {P(new KORXStartWriteFileTaskEvent(path)), "Writing File", "File Write", S},
        {P(new KORXEndWriteFileTaskEvent(r)), "File Write", "File Write", E},
        {P(new KORXEndTaskEvent(r, "End", "", KORX_LEVEL_INFO)), "End", "none (failed)", E},
    };
    for (const auto& [event, name, identifier, kind] : cases) {
        EXPECT_STREQ(event->GetName(), name);
        EXPECT_EQ(IdentifierOf(*event), identifier) << name;
        EXPECT_EQ(event->GetEventLevel(), KORX_LEVEL_INFO) << name;
        EXPECT_EQ(event->GetKind(), kind) << name;
        EXPECT_TRUE(event->IsTimed()) << name;
    }
    EXPECT_EQ(KORXStartTranslateRepairEvent("F", "N", 1, KORX_LEVEL_ERROR).GetEventLevel(), 80);

    KORXThirdPartyProgressEvent progress(42.5);
    double value = 0;
    EXPECT_TRUE(progress.GetProgress(value) == 0 && value == 42.5 && !progress.IsTimed());
}

TEST(TaskEventDescriptions, EndResultsOfProductWriteFileAndTheDefault) {
    // code; the product's end, the file write's end, and an end without a text of its own
    const std::tuple<long, const char*, const char*, const char*> cases[] = {
        {0, "Product Completed Successfully\n", "File Successfully Written\n",
         "Entity Reading Result : Success\n"},
        {0x2000003, "Product Aborted\n", "File Writing Aborted\n",
         "Entity Reading Result : Aborted\n"},
        {5, "Product Failed with code 5 (Unknown Result)\n", "File Writing Failed with code5\n",
         "Entity Reading Result : Unknown Result\n"},
        {0x1000001, "Product Failed with code 16777217 (Failure)\n",
         "File Writing Failed with code16777217\n", "Entity Reading Result : Failure\n"},
    };
    for (const auto& [code, product, writeFile, entities] : cases) {
        KORIResult result(code);
        EXPECT_EQ(Describe(KORXEndProductEvent(result)), product);
        EXPECT_EQ(Describe(KORXEndWriteFileTaskEvent(result)), writeFile);
        EXPECT_EQ(Describe(KORXEndReadEntitiesTaskEvent(result)), entities);
    }
}

TEST(TaskEventDescriptions, StartEventsWithATextOfTheirOwnAndTheirCopies) {
    KORXFilePath path("out/x.stp");
    EXPECT_EQ(Describe(KORXStartWriteFileTaskEvent(path)), "Writing File out\\x.stp\n");
    EXPECT_EQ(Describe(KORXStartConversionStageEvent("Faces", 12, 37.5, true)),
              "Conversion Stage : Faces, 12 entities, 37.50 %\n");
    EXPECT_EQ(Describe(KORXStartReadFileTaskEvent("in.igs")),
              "Reading File in.igs\n" + kRule + "\n Not Available \n" + kRule + "\n");
    EXPECT_EQ(Describe(KORXStartReadEntitiesTaskEvent()), "");

    auto repair = std::make_unique<KORXStartTranslateRepairEvent>("E", "L", 4, KORX_LEVEL_INFO);
    const KORXStartTranslateRepairEvent copy(*repair);
    repair.reset();  // the copy owns its own texts
    EXPECT_EQ(IdentifierOf(copy) + " " + Describe(copy), "Repair Repairing E 4 (L)\n");
}

TEST(TaskEventDescriptions, ProductStartListsTextsOptionsAndEnvironment) {
    EnvironmentGuard guard({"KORXLog", "UserEnv"});
    setenv("KORXLog", "trace.log", 1);
    unsetenv("UserEnv");

    KORXStartProductEvent event("KORX Writer", nullptr);
    EXPECT_EQ(event.AddOption("WriteLengthUnit", "mm"), 0);
    EXPECT_EQ(event.AddOption("SewTolerance", "0.01"), 0);
    EXPECT_EQ(event.AddOption("WriteLengthUnit", "inch"), 0);  // replaces, keeps its place
    EXPECT_EQ(event.AddOption("AVeryLongOptionNameBeyondTheColumn", nullptr), 0);
    EXPECT_TRUE(event.AddOption(nullptr, "") == 0x1000001 && event.AddOption("", "") == 0x1000001);

    EXPECT_EQ(Describe(event), "=============================\n"
                               "Product              : KORX Writer\n"
                               "Application          : \n"
                               "WriteLengthUnit      : inch\n"
                               "SewTolerance         : 0.01\n"
                               "AVeryLongOptionNameBeyondTheColumn : \n"
                               "KORXLog              : trace.log\n"
                               "UserEnv              : \n"
                               "=============================\n");
}

TEST(TaskEventDescriptions, EndEventsWithABlockAfterTheResult) {
    KORIResult result(0);
    KORXEndReadFileTaskEvent read(result);
    const std::string header =
        "File Reading Result : Success\n"
        "----------------------------File Header Information-----------------------------\n";
    EXPECT_EQ(Describe(read), header + " Not Available \n" + kRule + "\n");
    EXPECT_EQ(read.AddHeaderValue("Author", "someone"), 0);
    EXPECT_EQ(Describe(read), header + "Author               : someone\n" + kRule + "\n");

    EXPECT_EQ(Describe(KORXEndTranslationTaskEvent(result, 3)),
              "Translation Result : Success\n" + kRule + "\nFailed Entities : 3\n" + kRule + "\n");

    Info part;  // each count its own value, the curves near the largest int
    int n = 0;
    for (int32_t* count :
         {&part.pointBodies, &part.curves, &part.surfaces, &part.wireBodies, &part.sheetBodies,
          &part.solidBodies, &part.faces, &part.edges, &part.vertices})
        *count = ++n;
    part.curves = 2000000000;
    KORXEndConversionTaskEvent conversion(result, part);
    EXPECT_EQ(conversion.append(part, 2), 0);
    EXPECT_EQ(conversion.append(part, -1), 0x1000001);
    EXPECT_EQ(Describe(conversion), "KORXEndConversionTaskEvent Result : Success\n" + kRule + "\n" +
                                        "No. of Point Bodies     :    3\n"
                                        "No. of Curves           :    2147483647\n"
                                        "No. of Surfaces         :    9\n"
                                        "No. of Wire Bodies      :    12\n"
                                        "No. of Sheet Bodies     :    15\n"
                                        "No. of Solid Bodies     :    18\n"
                                        "No. of Faces            :    21\n"
                                        "No. of Edges            :    24\n"
                                        "No. of Vertices         :    27\n");
}

TEST(TaskEventFiring, EachFireSendsItsEventAtItsLevel) {
    EventRecorder recorder;
    KORIResult failed(0x1000001);
    KORXString name("in.stp");
    KORXStartTranslateRepairEvent::Fire("Face", "Nurbs", 7);
    KORXStartReadFileTaskEvent::Fire(name);
    KORXStartReadFileTaskEvent::Fire("in.igs");
    KORXStartOptionsTaskEvent::Fire();
    KORXStartConversionTaskEvent::Fire();
    KORXEndConversionTaskEvent::Fire(Info(), failed);
    KORXEndTranslationTaskEvent::Fire(failed);
    KORXEndTranslationTaskEvent::Fire(0x2000003L);
    KORXEndTaskEvent::Fire(failed, "Custom", "Custom Task", KORX_LEVEL_WARNING);
    KORXThirdPartyProgressEvent::Fire(0.5);

    // name, level, and the first line of the description (the blocks after it are checked above)
    const std::tuple<std::string, int, std::string> expected[] = {
        {"KORXStartTranslateRepairEvent", 30, "Repairing Face 7 (Nurbs)\n"},
        {"KORXStartReadFileTaskEvent", 50, "Reading File in.stp\n"},
        {"KORXStartReadFileTaskEvent", 50, "Reading File in.igs\n"},
        {"KORXStartOptionsTaskEvent", 50,
         "--------------------- Options Set by User ------------------\n"},
        {"KORXStartConversionTaskEvent", 50, ""},
        {"KORXEndConversionTaskEvent", 50, "KORXEndConversionTaskEvent Result : Failure\n"},
        {"Translation", 50, "Translation Result : Failure\n"},
        {"Translation", 50, "Translation Result : Aborted\n"},
        {"Custom", 70, "Custom Result : Failure\n"},
        {"KORXThirdPartyProgressEvent", 50, ""},
    };
    ASSERT_EQ(recorder.events.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        const RecordedEvent& event = recorder.events[i];
        const std::string firstLine = event.description.substr(0, event.description.find('\n') + 1);
        EXPECT_EQ(std::tie(event.name, event.level, firstLine), expected[i]) << i;
    }
}

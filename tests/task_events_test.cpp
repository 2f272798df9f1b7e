#include <korx/KORXFilePath.h>
#include <korx/KORXTaskEvent.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/environment_guard.h"
#include "support/event_recorder.h"

namespace {

using Info = KORXEndConversionTaskEvent::KORXConvertedEntitiesInfo;

const std::string kRule(80, '-');

std::string IdentifierOf(const KORXTaskEvent& event) {
    KORXString identifier("none");
    event.GetTaskIdentifier(identifier);
    return static_cast<const char*>(identifier);
}

}  // namespace

TEST(TaskEvents, NamesIdentifiersLevelsAndKinds) {
    KORIResult result(0);
    KORXFilePath path("out.stp");
    struct Case {
        std::unique_ptr<KORXTaskEvent> event;
        const char* name;
        const char* identifier;
        int level;
        KORXTaskEventKind kind;
    };
    Case cases[] = {
        {std::make_unique<KORXStartProductEvent>("p", "a"), "Start Product", "Product", 50,
         KORX_TASK_START},
        {std::make_unique<KORXEndProductEvent>(result), "Product End", "Product", 50,
         KORX_TASK_END},
        {std::make_unique<KORXStartReadFileTaskEvent>("in.igs"), "KORXStartReadFileTaskEvent",
         "Read File", 50, KORX_TASK_START},
        {std::make_unique<KORXEndReadFileTaskEvent>(result), "File Reading", "Read File", 50,
         KORX_TASK_END},
        {std::make_unique<KORXStartReadEntitiesTaskEvent>(), "KORXStarReadEntitiesTaskEvent",
         "Read Entities", 50, KORX_TASK_START},
        {std::make_unique<KORXEndReadEntitiesTaskEvent>(result), "Entity Reading", "Read Entities",
         50, KORX_TASK_END},
        {std::make_unique<KORXStartOptionsTaskEvent>(), "KORXStartOptionsTaskEvent", "Options", 50,
         KORX_TASK_START},
        {std::make_unique<KORXEndOptionsTaskEvent>(result), "Options logging", "Options", 50,
         KORX_TASK_END},
        {std::make_unique<KORXStartPreprocessDocumentEvent>(), "Start Document Preprocessing",
         "Document Preprocessing", 50, KORX_TASK_START},
        {std::make_unique<KORXEndPreprocessDocumentEvent>(result), "Document Preprocessing",
         "Document Preprocessing", 50, KORX_TASK_END},
        {std::make_unique<KORXStartConversionTaskEvent>(), "KORXStartConversionTaskEvent",
         "Conversion", 50, KORX_TASK_START},
        {std::make_unique<KORXEndConversionTaskEvent>(result, Info()), "KORXEndConversionTaskEvent",
         "Conversion", 50, KORX_TASK_END},
        {std::make_unique<KORXStartConversionStageEvent>("Faces", 3, 10.0, false),
         "KORXStartConversionStageEvent", "none", 50, KORX_TASK_START},
        {std::make_unique<KORXEndTranslationTaskEvent>(result, 0), "Translation", "Translation", 50,
         KORX_TASK_END},
        {std::make_unique<KORXStartTranslateRepairEvent>("Face", "Nurbs", 1, KORX_LEVEL_ERROR),
         "KORXStartTranslateRepairEvent", "Repair", 80, KORX_TASK_START},
        {std::make_unique<KORXStartWriteFileTaskEvent>(path), "Writing File", "File Write", 50,
         KORX_TASK_START},
        {std::make_unique<KORXEndWriteFileTaskEvent>(result), "File Write", "File Write", 50,
         KORX_TASK_END},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_STREQ(c.event->GetName(), c.name);
        EXPECT_EQ(IdentifierOf(*c.event), c.identifier);
        EXPECT_EQ(c.event->GetEventLevel(), c.level);
        EXPECT_EQ(c.event->GetKind(), c.kind);
        EXPECT_TRUE(c.event->IsTimed());
    }

    KORXThirdPartyProgressEvent progress(42.5);
    double value = 0;
    EXPECT_STREQ(progress.GetName(), "KORXThirdPartyProgressEvent");
    EXPECT_EQ(progress.GetEventLevel(), KORX_LEVEL_INFO);
    EXPECT_FALSE(progress.IsTimed());
    EXPECT_EQ(progress.GetProgress(value), 0);
    EXPECT_EQ(value, 42.5);
}

TEST(TaskEvents, NullOrEmptyIdentifierIsAFailureThatLeavesTheStringAlone) {
    KORIResult result(0);
    KORXStartTaskEvent none("start", nullptr, KORX_LEVEL_INFO);
    KORXStartTaskEvent empty("start", "", KORX_LEVEL_INFO);
    KORXEndTaskEvent end(result, "end", "", KORX_LEVEL_INFO);
    const KORXTaskEvent* events[] = {&none, &empty, &end};
    for (const KORXTaskEvent* event : events) {
        KORXString identifier("kept");
        EXPECT_EQ(event->GetTaskIdentifier(identifier), 0x1000001);
        EXPECT_STREQ(static_cast<const char*>(identifier), "kept");
    }
}

TEST(TaskEvents, CopiesOutliveTheirSource) {
    auto repair =
        std::make_unique<KORXStartTranslateRepairEvent>("Edge", "Line", 4, KORX_LEVEL_VERBOSE);
    const KORXStartTranslateRepairEvent copy(*repair);
    repair.reset();
    EXPECT_EQ(IdentifierOf(copy), "Repair");
    EXPECT_STREQ(copy.GetEntityType(), "Edge");
    EXPECT_STREQ(copy.GetRepresentation(), "Line");
}

TEST(TaskEventDescriptions, EndResultsOfProductWriteFileAndTheDefault) {
    struct Case {
        long code;
        const char* product;
        const char* writeFile;
        const char* entities;
    };
    const Case cases[] = {
        {0, "Product Completed Successfully\n", "File Successfully Written\n",
         "Entity Reading Result : Success\n"},
        {0x2000003, "Product Aborted\n", "File Writing Aborted\n",
         "Entity Reading Result : Aborted\n"},
        {5, "Product Failed with code 5 (Unknown Result)\n", "File Writing Failed with code5\n",
         "Entity Reading Result : Unknown Result\n"},
        {0x1000001, "Product Failed with code 16777217 (Failure)\n",
         "File Writing Failed with code16777217\n", "Entity Reading Result : Failure\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        KORIResult result(c.code);
        EXPECT_EQ(Describe(KORXEndProductEvent(result)), c.product);
        EXPECT_EQ(Describe(KORXEndWriteFileTaskEvent(result)), c.writeFile);
        EXPECT_EQ(Describe(KORXEndReadEntitiesTaskEvent(result)), c.entities);
    }
}

TEST(TaskEventDescriptions, StartEventsWithATextOfTheirOwn) {
    KORXFilePath path("out.stp");
    EXPECT_EQ(Describe(KORXStartWriteFileTaskEvent(path)), "Writing File out.stp\n");
    EXPECT_EQ(Describe(KORXStartConversionStageEvent("Faces", 12, 37.5, true)),
              "Conversion Stage : Faces, 12 entities, 37.50 %\n");
    EXPECT_EQ(Describe(KORXStartOptionsTaskEvent()),
              "--------------------- Options Set by User ------------------\n");
    EXPECT_EQ(Describe(KORXStartReadFileTaskEvent("in.igs")),
              "Reading File in.igs\n" + kRule + "\n Not Available \n" + kRule + "\n");
    EXPECT_EQ(Describe(KORXStartReadEntitiesTaskEvent()), "");
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
    EXPECT_EQ(event.AddOption(nullptr, "x"), 0x1000001);
    EXPECT_EQ(event.AddOption("", "x"), 0x1000001);

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
    read.AddHeaderValue("Author", "someone");
    EXPECT_EQ(Describe(read), header + "Author               : someone\n" + kRule + "\n");

    EXPECT_EQ(Describe(KORXEndTranslationTaskEvent(result, 3)),
              "Translation Result : Success\n" + kRule + "\nFailed Entities : 3\n" + kRule + "\n");

    Info info;
    info.pointBodies = 2;
    info.solidBodies = 1;
    info.vertices = 9;
    EXPECT_EQ(Describe(KORXEndConversionTaskEvent(result, info)),
              "KORXEndConversionTaskEvent Result : Success\n" + kRule + "\n" +
                  "No. of Point Bodies     :    2\n"
                  "No. of Curves           :    0\n"
                  "No. of Surfaces         :    0\n"
                  "No. of Wire Bodies      :    0\n"
                  "No. of Sheet Bodies     :    0\n"
                  "No. of Solid Bodies     :    1\n"
                  "No. of Faces            :    0\n"
                  "No. of Edges            :    0\n"
                  "No. of Vertices         :    9\n");
}

TEST(ConvertedEntities, AppendAddsCountsTimesOverAndRefusesNegativeTimes) {
    KORIResult result(0);
    Info part;
    part.faces = 6;
    part.edges = 12;
    KORXEndConversionTaskEvent event(result, part);
    EXPECT_EQ(event.append(part, 3), 0);
    EXPECT_EQ(event.append(part, -1), 0x1000001);
    EXPECT_EQ(event.GetConvertedEntitiesInfo().faces, 24);
    EXPECT_EQ(event.GetConvertedEntitiesInfo().edges, 48);

    Info huge;
    huge.curves = 2000000000;
    EXPECT_EQ(event.append(huge, 2), 0);
    EXPECT_EQ(event.GetConvertedEntitiesInfo().curves, 2147483647);
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

    struct Expected {
        const char* name;
        int level;
        std::string description;
    };
    const Expected expected[] = {
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
        SCOPED_TRACE(i);
        EXPECT_EQ(recorder.events[i].name, expected[i].name);
        EXPECT_EQ(recorder.events[i].level, expected[i].level);
        // The first line only (npos + 1 is 0): the blocks after it are checked above.
        const std::string& text = recorder.events[i].description;
        EXPECT_EQ(text.substr(0, text.find('\n') + 1), expected[i].description);
    }
}

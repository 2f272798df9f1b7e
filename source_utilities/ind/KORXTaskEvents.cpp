#include <korx/KORXEnvironment.h>
#include <korx/KORXFilePath.h>
#include <korx/KORXStreamFormatter.h>
#include <korx/KORXTaskEvent.h>

#include <climits>
#include <cstring>

#include "internal/OwnedText.h"
#include "internal/Platform.h"

using korx::detail::CopyText;
using Info = KORXEndConversionTaskEvent::KORXConvertedEntitiesInfo;

namespace {

constexpr long kFailure = 0x1000001;
constexpr long kAborted = 0x2000003;

constexpr const char* kRule =
    "--------------------------------------------------------------------------------";
constexpr const char* kProductFrame = "=============================";
constexpr const char* kHeaderInformation =
    "----------------------------File Header Information-----------------------------";
constexpr const char* kOptionsHeader =
    "--------------------- Options Set by User ------------------";

constexpr int kLabelWidth = 20;
constexpr int kEntityLabelWidth = 24;

struct EntityKind {
    int32_t Info::*count;
    const char* label;
};

constexpr EntityKind kEntityKinds[] = {
    {&Info::pointBodies, "No. of Point Bodies"},
    {&Info::curves, "No. of Curves"},
    {&Info::surfaces, "No. of Surfaces"},
    {&Info::wireBodies, "No. of Wire Bodies"},
    {&Info::sheetBodies, "No. of Sheet Bodies"},
    {&Info::solidBodies, "No. of Solid Bodies"},
    {&Info::faces, "No. of Faces"},
    {&Info::edges, "No. of Edges"},
    {&Info::vertices, "No. of Vertices"},
};

const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }

const char* bytesOf(const KORXString& text) { return orEmpty(text); }

unsigned int codeOf(const KORIResult& result) {
    return static_cast<unsigned int>(static_cast<long>(result));
}

// As "%-<width>s" would, for a label of any length.
void writePadded(KORXStreamFormatter& f, const char* label, int width) {
    f << label;
    for (size_t n = std::strlen(label); n < static_cast<size_t>(width); ++n)
        f << ' ';
}

// One "%-20s : value" line.
void writeLabeledLine(KORXStreamFormatter& f, const char* label, const char* value) {
    writePadded(f, label, kLabelWidth);
    f << " : " << value << f.getEndline();
}

void writePropertyLines(KORXStreamFormatter& f, const KORXProperties& properties) {
    for (int i = 0; i < properties.GetCount(); ++i) {
        KORXString name;
        KORXString value;
        properties.Get(i, name, value);
        writeLabeledLine(f, bytesOf(name), bytesOf(value));
    }
}

// An unset variable shows an empty value.
void writeEnvironmentLine(KORXStreamFormatter& f, const char* variable) {
    KORXString value;
    KORXEnvironment::GetVariable(KORXString(variable), value);
    writeLabeledLine(f, variable, bytesOf(value));
}

KORIResult addProperty(KORXProperties& properties, const char* name, const char* value) {
    if (name == nullptr || name[0] == '\0')
        return KORIResult(kFailure);
    return properties.Set(KORXString(name), KORXString(orEmpty(value)));
}

int32_t saturatedSum(int32_t count, long long added) {
    const long long sum = static_cast<long long>(count) + added;
    if (sum > INT32_MAX)
        return INT32_MAX;
    if (sum < INT32_MIN)
        return INT32_MIN;
    return static_cast<int32_t>(sum);
}

}  // namespace

// ---- Product ----------------------------------------------------------------------------------

KORXStartProductEvent::KORXStartProductEvent(const char* product, const char* application)
    : KORXStartTaskEvent("Start Product", "Product", KORX_LEVEL_INFO), m_product(CopyText(product)),
      m_application(CopyText(application)) {}

KORXStartProductEvent::~KORXStartProductEvent() = default;

KORIResult KORXStartProductEvent::AddOption(const char* name, const char* value) {
    return addProperty(m_options, name, value);
}

void KORXStartProductEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    f << kProductFrame << f.getEndline();
    writeLabeledLine(f, "Product", orEmpty(m_product.get()));
    writeLabeledLine(f, "Application", orEmpty(m_application.get()));
    writePropertyLines(f, m_options);
    writeEnvironmentLine(f, "KORXLog");
    writeEnvironmentLine(f, "UserEnv");
    f << kProductFrame << f.getEndline();
}

KORXEndProductEvent::KORXEndProductEvent(KORIResult& result)
    : KORXEndTaskEvent(result, "Product End", "Product", KORX_LEVEL_INFO) {}

KORXEndProductEvent::~KORXEndProductEvent() = default;

void KORXEndProductEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    const KORIResult result = getTaskResult();
    if (result == 0)
        f << "Product Completed Successfully\n";
    else if (result == kAborted)
        f << "Product Aborted\n";
    else
        f << "Product Failed with code " << codeOf(result) << " (" << result.GetMessage() << ")\n";
}

// ---- Reading ----------------------------------------------------------------------------------

KORXStartReadFileTaskEvent::KORXStartReadFileTaskEvent(KORXString& fileName)
    : KORXStartTaskEvent("KORXStartReadFileTaskEvent", "Read File", KORX_LEVEL_INFO),
      m_fileName(fileName) {}

KORXStartReadFileTaskEvent::KORXStartReadFileTaskEvent(const char* fileName)
    : KORXStartTaskEvent("KORXStartReadFileTaskEvent", "Read File", KORX_LEVEL_INFO),
      m_fileName(fileName) {}

KORXStartReadFileTaskEvent::~KORXStartReadFileTaskEvent() = default;

void KORXStartReadFileTaskEvent::Fire(KORXString& fileName) {
    KORXStartReadFileTaskEvent event(fileName);
    KORXEventBus::Fire(event);
}

void KORXStartReadFileTaskEvent::Fire(const char* fileName) {
    KORXStartReadFileTaskEvent event(fileName);
    KORXEventBus::Fire(event);
}

void KORXStartReadFileTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    f << "Reading File " << bytesOf(m_fileName) << f.getEndline();
    f << kRule << f.getEndline() << " Not Available " << f.getEndline() << kRule << f.getEndline();
}

KORXEndReadFileTaskEvent::KORXEndReadFileTaskEvent(KORIResult& result)
    : KORXEndTaskEvent(result, "File Reading", "Read File", KORX_LEVEL_INFO) {}

KORXEndReadFileTaskEvent::~KORXEndReadFileTaskEvent() = default;

KORIResult KORXEndReadFileTaskEvent::AddHeaderValue(const char* name, const char* value) {
    return addProperty(m_header, name, value);
}

void KORXEndReadFileTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXEndTaskEvent::GetFormattedDescription(stream);
    KORXStreamFormatter f(stream);
    f << kHeaderInformation << f.getEndline();
    if (m_header.GetCount() == 0)
        f << " Not Available " << f.getEndline();
    writePropertyLines(f, m_header);
    f << kRule << f.getEndline();
}

KORXStartReadEntitiesTaskEvent::KORXStartReadEntitiesTaskEvent()
    : KORXStartTaskEvent("KORXStarReadEntitiesTaskEvent", "Read Entities", KORX_LEVEL_INFO) {}

KORXStartReadEntitiesTaskEvent::~KORXStartReadEntitiesTaskEvent() = default;

KORXEndReadEntitiesTaskEvent::KORXEndReadEntitiesTaskEvent(KORIResult& result)
    : KORXEndTaskEvent(result, "Entity Reading", "Read Entities", KORX_LEVEL_INFO) {}

KORXEndReadEntitiesTaskEvent::~KORXEndReadEntitiesTaskEvent() = default;

// ---- Options and preprocessing ----------------------------------------------------------------

KORXStartOptionsTaskEvent::KORXStartOptionsTaskEvent()
    : KORXStartTaskEvent("KORXStartOptionsTaskEvent", "Options", KORX_LEVEL_INFO) {}

KORXStartOptionsTaskEvent::~KORXStartOptionsTaskEvent() = default;

void KORXStartOptionsTaskEvent::Fire() {
    KORXStartOptionsTaskEvent event;
    KORXEventBus::Fire(event);
}

void KORXStartOptionsTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    f << kOptionsHeader << f.getEndline();
}

KORXEndOptionsTaskEvent::KORXEndOptionsTaskEvent(KORIResult& result)
    : KORXEndTaskEvent(result, "Options logging", "Options", KORX_LEVEL_INFO) {}

KORXEndOptionsTaskEvent::~KORXEndOptionsTaskEvent() = default;

KORXStartPreprocessDocumentEvent::KORXStartPreprocessDocumentEvent()
    : KORXStartTaskEvent("Start Document Preprocessing", "Document Preprocessing",
                         KORX_LEVEL_INFO) {}

KORXStartPreprocessDocumentEvent::~KORXStartPreprocessDocumentEvent() = default;

KORXEndPreprocessDocumentEvent::KORXEndPreprocessDocumentEvent(KORIResult& result)
    : KORXEndTaskEvent(result, "Document Preprocessing", "Document Preprocessing",
                       KORX_LEVEL_INFO) {}

KORXEndPreprocessDocumentEvent::~KORXEndPreprocessDocumentEvent() = default;

// ---- Conversion -------------------------------------------------------------------------------

KORXStartConversionTaskEvent::KORXStartConversionTaskEvent()
    : KORXStartTaskEvent("KORXStartConversionTaskEvent", "Conversion", KORX_LEVEL_INFO) {}

KORXStartConversionTaskEvent::~KORXStartConversionTaskEvent() = default;

void KORXStartConversionTaskEvent::Fire() {
    KORXStartConversionTaskEvent event;
    KORXEventBus::Fire(event);
}

Info::KORXConvertedEntitiesInfo()
    : pointBodies(0), curves(0), surfaces(0), wireBodies(0), sheetBodies(0), solidBodies(0),
      faces(0), edges(0), vertices(0) {}

Info::KORXConvertedEntitiesInfo(const KORXConvertedEntitiesInfo& other) = default;

void Info::init(const KORXConvertedEntitiesInfo& other) { *this = other; }

KORXEndConversionTaskEvent::KORXEndConversionTaskEvent(KORIResult& result, const Info& info)
    : KORXEndTaskEvent(result, "KORXEndConversionTaskEvent", "Conversion", KORX_LEVEL_INFO),
      m_info(info) {}

KORXEndConversionTaskEvent::~KORXEndConversionTaskEvent() = default;

void KORXEndConversionTaskEvent::Fire(const Info& info, KORIResult& result) {
    KORXEndConversionTaskEvent event(result, info);
    KORXEventBus::Fire(event);
}

KORIResult KORXEndConversionTaskEvent::append(const Info& info, int times) {
    if (times < 0)
        return KORIResult(kFailure);
    for (const EntityKind& kind : kEntityKinds)
        m_info.*kind.count =
            saturatedSum(m_info.*kind.count, static_cast<long long>(info.*kind.count) * times);
    return KORIResult(0);
}

void KORXEndConversionTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXEndTaskEvent::GetFormattedDescription(stream);
    KORXStreamFormatter f(stream);
    f << kRule << f.getEndline();
    for (const EntityKind& kind : kEntityKinds) {
        writePadded(f, kind.label, kEntityLabelWidth);
        f << ":    " << static_cast<int>(m_info.*kind.count) << f.getEndline();
    }
}

KORXStartConversionStageEvent::KORXStartConversionStageEvent(const char* entityType,
                                                             int entityCount, double stagePercent,
                                                             bool leaf)
    : KORXStartTaskEvent("KORXStartConversionStageEvent", nullptr, KORX_LEVEL_INFO),
      m_entityType(CopyText(entityType)), m_entityCount(entityCount), m_stagePercent(stagePercent),
      m_leaf(leaf), m_finished(false) {}

KORXStartConversionStageEvent::~KORXStartConversionStageEvent() = default;

void KORXStartConversionStageEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    char percent[64];
    korx::detail::Format(percent, sizeof percent, "%.2f", m_stagePercent);
    KORXStreamFormatter f(stream);
    f << "Conversion Stage : " << orEmpty(m_entityType.get()) << ", "
      << static_cast<int>(m_entityCount) << " entities, " << percent << " %" << f.getEndline();
}

// ---- Translation and repair -------------------------------------------------------------------

KORXEndTranslationTaskEvent::KORXEndTranslationTaskEvent(KORIResult& result, int failedEntities)
    : KORXEndTaskEvent(result, "Translation", "Translation", KORX_LEVEL_INFO),
      m_failedEntities(failedEntities) {}

KORXEndTranslationTaskEvent::~KORXEndTranslationTaskEvent() = default;

void KORXEndTranslationTaskEvent::Fire(KORIResult& result) {
    KORXEndTranslationTaskEvent event(result, 0);
    KORXEventBus::Fire(event);
}

void KORXEndTranslationTaskEvent::Fire(long resultCode) {
    KORIResult result(resultCode);
    Fire(result);
}

void KORXEndTranslationTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXEndTaskEvent::GetFormattedDescription(stream);
    KORXStreamFormatter f(stream);
    f << kRule << f.getEndline();
    f << "Failed Entities : " << static_cast<int>(m_failedEntities) << f.getEndline();
    f << kRule << f.getEndline();
}

KORXStartTranslateRepairEvent::KORXStartTranslateRepairEvent(const char* entityType,
                                                             const char* representation,
                                                             int entityNumber, KORXEventLevel level)
    : KORXStartTaskEvent("KORXStartTranslateRepairEvent", "Repair", level),
      m_entityType(CopyText(entityType)), m_representation(CopyText(representation)),
      m_entityNumber(entityNumber) {}

KORXStartTranslateRepairEvent::~KORXStartTranslateRepairEvent() = default;

void KORXStartTranslateRepairEvent::Fire(const char* entityType, const char* representation,
                                         int entityNumber) {
    KORXStartTranslateRepairEvent event(entityType, representation, entityNumber,
                                        KORX_LEVEL_VERBOSE);
    KORXEventBus::Fire(event);
}

void KORXStartTranslateRepairEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    f << "Repairing " << orEmpty(m_entityType.get()) << " " << static_cast<int>(m_entityNumber)
      << " (" << orEmpty(m_representation.get()) << ")" << f.getEndline();
}

// ---- Writing ----------------------------------------------------------------------------------

KORXStartWriteFileTaskEvent::KORXStartWriteFileTaskEvent(KORXFilePath& path)
    : KORXStartTaskEvent("Writing File", "File Write", KORX_LEVEL_INFO), m_path(path.GetPath()) {}

KORXStartWriteFileTaskEvent::~KORXStartWriteFileTaskEvent() = default;

void KORXStartWriteFileTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    f << "Writing File " << bytesOf(m_path) << f.getEndline();
}

KORXEndWriteFileTaskEvent::KORXEndWriteFileTaskEvent(KORIResult& result)
    : KORXEndTaskEvent(result, "File Write", "File Write", KORX_LEVEL_INFO) {}

KORXEndWriteFileTaskEvent::~KORXEndWriteFileTaskEvent() = default;

// The code follows "code" without a blank, unlike the product's message: log readers match the
// text as it is.
void KORXEndWriteFileTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    const KORIResult result = getTaskResult();
    if (result == 0)
        f << "File Successfully Written\n";
    else if (result == kAborted)
        f << "File Writing Aborted\n";
    else
        f << "File Writing Failed with code" << codeOf(result) << "\n";
}

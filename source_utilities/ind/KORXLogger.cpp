#include <korx/Gk_Exception.h>
#include <korx/KORXEnvironment.h>
#include <korx/KORXFileDescriptor.h>
#include <korx/KORXFilePath.h>
#include <korx/KORXLogger.h>
#include <korx/KORXStream.h>
#include <korx/MessageHandler.h>

#include <string>

#include "internal/MessageText.h"
#include "internal/Platform.h"

namespace {

constexpr const char* kCategory = "VANTOR_GENERAL";
constexpr const char* kNotForwarded = "OldLog: ";
constexpr const char* kNotWritten = "NewLog: ";

// The event's description without its final end of line; empty when there is nothing else.
std::string describedText(const KORXEvent& event) {
    KORXStringOutputStream description;
    event.GetFormattedDescription(&description);
    const int length = description.len();
    // chop(n) keeps n + 1 bytes: this drops exactly the final character.
    description.chop(length - 2);
    const char* text = description.contents();
    return text != nullptr ? std::string(text) : std::string();
}

// Removes the first occurrence of marker; true when there was one.
bool removeMarker(std::string& text, const char* marker) {
    const size_t at = text.find(marker);
    if (at == std::string::npos)
        return false;
    text.erase(at, std::char_traits<char>::length(marker));
    return true;
}

enum class Severity { Debug, Info, Warning, Error, Unknown };

Severity severityOf(int level) {
    if (level >= 10 && level <= 49)
        return Severity::Debug;
    if (level >= 50 && level <= 69)
        return Severity::Info;
    if (level >= 70 && level <= 79)
        return Severity::Warning;
    if (level >= 80 && level <= 99)
        return Severity::Error;
    return Severity::Unknown;
}

// The handler reads the text as a format: it is given the text formatted a second time,
// so "%%" arrives as "%" and no other conversion is ever read.
void forward(MessageHandler& handler, Severity severity, const std::string& text) {
    char reformatted[korx::detail::kMessageBytes];
    korx::detail::Reformat(reformatted, sizeof reformatted, text.c_str());
    switch (severity) {
    case Severity::Unknown:
        handler.ReportInfo2(kCategory, "%s", "Message severity unknown. Report a PR.");
        handler.ReportDebug2(kCategory, "%s", reformatted);
        break;
    case Severity::Debug:
        handler.ReportDebug2(kCategory, "%s", reformatted);
        break;
    case Severity::Info:
        handler.ReportInfo2(kCategory, "%s", reformatted);
        break;
    case Severity::Warning:
        handler.ReportWarning2(kCategory, "%s", reformatted);
        break;
    case Severity::Error:
        handler.ReportError2(kCategory, "%s", reformatted);
        break;
    }
}

KORXEventLevel levelFromEnvironment(const char* variable, KORXEventLevel defaultLevel,
                                    bool& found) {
    KORXString text;
    found = KORXEnvironment::GetVariable(KORXString(variable), text).IsSuccess();
    return found ? KORXEvent::GetLevel(text, defaultLevel) : defaultLevel;
}

// A file stream on path, or null when the file cannot be opened for writing.
KORXOutputStream* openForWriting(const char* path) {
    KORXFileDescriptorHandle descriptor(
        new KORXFileDescriptor(path, KORXFileDescriptor::WRITE_MODE));
    if (!descriptor->isOpen())
        return nullptr;
    return new KORXFileOutputStream(descriptor.get());
}

}  // namespace

// ---- KORXLogger -------------------------------------------------------------------------------

KORXLogger::KORXLogger() : m_level(KORX_LEVEL_NONE), m_stream(nullptr) {}

KORXLogger::~KORXLogger() { KORXLogger::Finalize(); }

void KORXLogger::Initialize(KORXOutputStream* stream, KORXEventLevel level) {
    if (level == static_cast<KORXEventLevel>(-1)) {
        bool found = false;
        m_level = levelFromEnvironment("KORXLogLevel", KORX_LEVEL_INFO, found);
    } else {
        m_level = level;
    }
    m_stream = stream;
    KORXEventBus::GetEventBus().AddListener(this);
}

void KORXLogger::Initialize(FILE* file, KORXEventLevel level) {
    if (file != nullptr)
        Initialize(static_cast<KORXOutputStream*>(new KORXFileOutputStream(file)), level);
}

void KORXLogger::Initialize(const char* fileName, KORXEventLevel level) {
    if (fileName == nullptr || fileName[0] == '\0')
        return;
    try {
        KORXOutputStream* stream = openForWriting(fileName);
        if (stream != nullptr)
            Initialize(stream, level);
    } catch (const KORXAbortException&) {
        throw KORXAbortException();
    } catch (...) {
        // Any other failure leaves the logger unregistered.
    }
}

void KORXLogger::Initialize(KORXFilePath& path, KORXEventLevel level) {
    if (!path.IsValid())
        return;
    const KORXString text = path.GetPath();
    Initialize(static_cast<const char*>(text), level);
}

void KORXLogger::Finalize() {
    m_level = KORX_LEVEL_NONE;
    KORXEventBus::GetEventBus().RemoveListener(this);
    delete m_stream;
    m_stream = nullptr;
}

void KORXLogger::HandleEvent(KORXEvent& event) {
    std::string text = describedText(event);
    if (text.empty())
        return;
    bool write = true;
    bool forwardIt = true;
    if (removeMarker(text, kNotForwarded))
        forwardIt = false;
    else if (removeMarker(text, kNotWritten))
        write = false;
    if (write && m_stream != nullptr && event.GetEventLevel() >= m_level) {
        // The text and a plain formatter's end of line, in one write: file streams do not
        // buffer, so each write is a call to the system.
        const std::string line = text + "\n";
        m_stream->write(line.data(), static_cast<int>(line.size()));
    }
    MessageHandler* handler = VantorMessageHandler::GetInstance(false);
    if (forwardIt && handler != nullptr)
        forward(*handler, severityOf(event.GetEventLevel()), text);
}

// ---- KORXConsoleLogger ------------------------------------------------------------------------

KORXConsoleLogger::KORXConsoleLogger() : m_out(nullptr), m_err(nullptr) {}

KORXConsoleLogger::~KORXConsoleLogger() {
    KORXEventBus::GetEventBus().RemoveListener(this);
    delete m_out;
    delete m_err;
}

KORXConsoleLogger& KORXConsoleLogger::GetConsoleLogger() {
    static KORXConsoleLogger console;
    return console;
}

bool KORXConsoleLogger::IsInitialized() const { return m_out != nullptr || m_err != nullptr; }

void KORXConsoleLogger::Initialize(KORXEventLevel level) {
    if (IsInitialized())
        return;
    m_out = new KORXFileOutputStream(new KORXFileDescriptor(1, KORXFileDescriptor::WRITE_MODE));
    m_err = new KORXFileOutputStream(new KORXFileDescriptor(2, KORXFileDescriptor::WRITE_MODE));
    bool found = false;
    const KORXEventLevel configured =
        levelFromEnvironment("KORXConsoleTracesLevel", KORX_LEVEL_NONE, found);
    if (found)
        m_level = configured;
    else
        m_level = level == static_cast<KORXEventLevel>(-1) ? KORX_LEVEL_INFO : level;
    KORXEventBus::GetEventBus().AddListener(this);
}

void KORXConsoleLogger::SetUp(KORXEventLevel level) {
    GetConsoleLogger().Initialize(level);
    KORXTimingLogger::SetUp();
}

void KORXConsoleLogger::HandleEvent(KORXEvent& event) {
    if (!IsInitialized() || event.GetEventLevel() < m_level)
        return;
    event.GetFormattedDescription(event.GetEventLevel() >= KORX_LEVEL_WARNING ? m_err : m_out);
}

// ---- VantorMessageHandler ---------------------------------------------------------------------

MessageHandler* VantorMessageHandler::m_instance = nullptr;

MessageHandler* VantorMessageHandler::GetInstance(bool create) {
    if (m_instance != nullptr || !create)
        return m_instance;
    const char* const categories[] = {kCategory};
    m_instance = new MessageHandler(categories, 1, nullptr, 0, nullptr, "false");
    m_instance->SetLogReporting("all info warning");
    return m_instance;
}

void VantorMessageHandler::DestroyInstance() {
    delete m_instance;
    m_instance = nullptr;
}

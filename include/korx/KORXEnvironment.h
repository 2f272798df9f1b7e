// KORXEnvironment.h
//
// The one way the library reads and sets process environment variables. Lookups go to the live
// environment every time and ignore the case of names; when several variables match, the first
// in the environment wins, and only the first '=' of an entry separates name from value.
//
// GetEnv() is a snapshot: a property set filled from the environment on its first call and
// never refreshed nor released. Variables set afterwards are not in it; GetVariable sees them.
//
// Every operation answers 0 on success and 0x1000001 otherwise; none throws. Not thread-safe.
#ifndef KORX_KORXENVIRONMENT_H
#define KORX_KORXENVIRONMENT_H

#include <korx/KORIResult.h>
#include <korx/KORXExport.h>
#include <korx/KORXProperties.h>
#include <korx/KORXString.h>

class KORX_API KORXEnvironment : public KORXProperties {
public:
    /// The process-wide snapshot, made on the first call and never released.
    static KORXEnvironment& GetEnv();

    /// The value of the first variable whose name equals name without regard to case; value
    /// stays untouched when there is none.
    static KORIResult GetVariable(const KORXString& name, KORXString& value);
    /// The variable as a flag: true for "True", "Yes" or "On" in any case, false for every
    /// other value. A missing variable gives false too; the result tells it apart.
    static KORIResult GetVariable(const KORXString& name, bool& flag);
    /// Sets name=value in the process environment and reports it through KORXInfo. The text
    /// goes through one more formatting pass, so "%%" in it is stored as "%". An empty name
    /// is refused. A later call never changes a variable set earlier under another name.
    static KORIResult PutVariable(const KORXString& name, KORXString& value);

    KORXEnvironment(const KORXEnvironment&) = delete;
    KORXEnvironment& operator=(const KORXEnvironment&) = delete;

private:
    KORXEnvironment();
    ~KORXEnvironment() override;

    static KORXEnvironment* _pVariables;
};

#endif

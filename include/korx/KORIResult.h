// KORIResult.h
//
// The result almost every operation of the library returns: one 32-bit code whose bits 24-27
// give the criticity (0 success, 1 failure, 2 aborted, 3 undetermined), bits 16-23 the domain
// and bits 0-15 the number within the domain. 0 is "Success", 1 "Partial Success" and
// 0x1000001 the general "Failure"; a default result is "Undetermined" (0x3000006).
//
// Results of several steps are merged with &= (every step must succeed) and |= (one success
// is enough); each operator keeps one side or stores "Partial Success" by a fixed table.
#ifndef KORX_KORIRESULT_H
#define KORX_KORIRESULT_H

#include <korx/KORXExport.h>

#include <cstdint>
#include <type_traits>

class KORX_API KORIResult {
public:
    /// 0x1000001, "Failure".
    static const KORIResult E_FAIL_RESULT;

    /// Undetermined (0x3000006).
    constexpr KORIResult() noexcept : m_code(0x3000006) {}
    /// Keeps the low 32 bits of code.
    constexpr KORIResult(long code) noexcept : m_code(static_cast<uint32_t>(code)) {}

    KORIResult& operator=(long code);
    bool operator==(long code) const;
    bool operator!=(long code) const;
    /// Comparisons with any other integer type go through the long forms; without these, a
    /// comparison with an int literal would be ambiguous with the built-in one.
    template <class Code, std::enable_if_t<std::is_integral_v<Code>, int> = 0>
    bool operator==(Code code) const {
        return *this == static_cast<long>(code);
    }
    template <class Code, std::enable_if_t<std::is_integral_v<Code>, int> = 0>
    bool operator!=(Code code) const {
        return *this != static_cast<long>(code);
    }
    /// The code, 0 .. 0xFFFFFFFF.
    operator long() const;

    int GetNumber() const;
    int GetDomain() const;
    int GetCriticity() const;
    /// The text of a known code, else "Unknown Result". Static text, never null.
    const char* GetMessage() const;

    bool IsSuccess() const;
    /// A success other than "Partial Success": "No Entity to Translate" (2) counts.
    bool IsCompleteSuccess() const;
    bool IsPartialSuccess() const;
    /// Any criticity but success, including undetermined.
    bool IsFailure() const;
    bool IsDeterminedFailure() const;
    bool IsUndetermined() const;

    /// 0 for a success; for a failure 1 when the domain is not 0, else the number.
    int GetReturnCode() const;
    /// 1 for true, 0 for false.
    static int GetReturnCode(bool success);
    /// "OK" or "KO".
    static const char* GetOKKOString(bool success);

    /// Every step must succeed: keeps this result or takes other's, by a fixed table in which
    /// a determined failure is never replaced. Returns this result.
    KORIResult& operator&=(KORIResult other);
    /// One success is enough: keeps this result, takes other's or stores "Partial Success", by
    /// a fixed table. Returns this result.
    KORIResult& operator|=(KORIResult other);

private:
    uint32_t m_code;
};

#endif

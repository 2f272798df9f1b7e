// Test support: puts environment variables back as they were (or unsets them) when it goes.
#ifndef KORX_TESTS_ENVIRONMENT_GUARD_H
#define KORX_TESTS_ENVIRONMENT_GUARD_H

#include <cstdlib>
#include <string>
#include <vector>

class EnvironmentGuard {
public:
    explicit EnvironmentGuard(std::vector<std::string> names) {
        for (std::string& name : names) {
            const char* value = std::getenv(name.c_str());
            m_saved.push_back({std::move(name), value != nullptr, value != nullptr ? value : ""});
        }
    }
    ~EnvironmentGuard() {
        for (const Saved& s : m_saved) {
            if (s.wasSet)
                setenv(s.name.c_str(), s.value.c_str(), 1);
            else
                unsetenv(s.name.c_str());
        }
    }
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

private:
    struct Saved {
        std::string name;
        bool wasSet;
        std::string value;
    };
    std::vector<Saved> m_saved;
};

#endif

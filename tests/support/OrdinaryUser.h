#pragma once

#include <unistd.h>

/// While it lives, the process may do no more than any user; the superuser may write anywhere.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_before(geteuid()), m_isOne(m_before != 0 || seteuid(nobody) == 0) {}
    ~OrdinaryUser()
    {
        if (m_before == 0)
            m_isOne = seteuid(0) == 0;
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    /// False where the superuser may not become another one.
    bool isOne() const { return m_isOne; }

private:
    static constexpr uid_t nobody = 65534;

    uid_t m_before;
    bool m_isOne;
};

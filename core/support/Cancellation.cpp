// SPDX-License-Identifier: MIT
#include "support/Cancellation.h"

#include <map>
#include <utility>

namespace corvanta {

struct CancellationToken::State {
    bool cancelled = false;
    unsigned long nextKey = 0;
    std::map<unsigned long, std::function<void()>> callbacks;
};

struct CancellationToken::Registration::Impl {
    std::weak_ptr<State> state;
    unsigned long key;
};

CancellationToken::CancellationToken(std::shared_ptr<State> state)
    : m_state(std::move(state)) {}

bool CancellationToken::isCancelled() const {
    return m_state && m_state->cancelled;
}

CancellationToken::Registration CancellationToken::onCancel(std::function<void()> callback) const {
    if (!m_state)
        return {};
    if (m_state->cancelled) {
        callback();
        return {};
    }
    const auto key = m_state->nextKey++;
    m_state->callbacks.emplace(key, std::move(callback));
    return Registration(std::make_unique<Registration::Impl>(m_state, key));
}

CancellationToken::Registration::Registration() = default;

CancellationToken::Registration::Registration(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {}

CancellationToken::Registration::Registration(Registration&& other) noexcept = default;

CancellationToken::Registration& CancellationToken::Registration::operator=(Registration&& other) noexcept {
    std::swap(m_impl, other.m_impl);
    return *this;
}

CancellationToken::Registration::~Registration() {
    if (!m_impl)
        return;
    if (const auto state = m_impl->state.lock())
        state->callbacks.erase(m_impl->key);
}

CancellationSource::CancellationSource()
    : m_state(std::make_shared<CancellationToken::State>()) {}

CancellationToken CancellationSource::token() const {
    return CancellationToken(m_state);
}

void CancellationSource::cancel() {
    if (m_state->cancelled)
        return;
    // A callback may destroy this source or another registration.
    const auto state = m_state;
    state->cancelled = true;
    while (!state->callbacks.empty()) {
        const auto node = state->callbacks.extract(state->callbacks.begin());
        node.mapped()();
    }
}

} // namespace corvanta

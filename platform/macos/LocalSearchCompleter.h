// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceSearch.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace corvanta {

/// MapKit's completer as it is: it answers when it likes to. Main thread only.
class LocalSearchCompleter {
public:
    /// Both are called on the main thread, and not after the completer is gone.
    struct Callbacks {
        std::function<void()> didUpdate;
        std::function<void(const QString& description)> didFail;
    };

    explicit LocalSearchCompleter(Callbacks callbacks);
    LocalSearchCompleter(const LocalSearchCompleter&) = delete;
    LocalSearchCompleter& operator=(const LocalSearchCompleter&) = delete;
    ~LocalSearchCompleter();

    /// MapKit's option value.
    void setResultTypes(unsigned types);
    void setQueryFragment(const QString& fragment);
    [[nodiscard]] std::vector<PlaceCompletion> results() const;

private:
    struct Native;
    std::unique_ptr<Native> m_native;
};

} // namespace corvanta

// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <functional>
#include <memory>
#include <utility>

namespace corvanta {

/// Makes one program of this user's session the only one: who comes second hands its arguments to the first.
/// Main thread only.
class SingleInstance {
public:
    enum class Standing {
        /// This program goes on; it hears of those that come after it.
        alone,
        /// The first one has taken the arguments.
        handedOver,
        /// There is a first one, but it does not answer.
        unanswered,
    };

    /// Called with the arguments that another program was started with, its name first.
    using OpenedHandler = std::function<void(const QStringList& arguments)>;

    SingleInstance() = default;
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    virtual ~SingleInstance() = default;

    /// Becomes the first one, or hands `arguments` to the program that is, for which it waits some seconds.
    [[nodiscard]] virtual Standing claim(const QStringList& arguments) = 0;

    /// Makes room, so that the next program is a first one again.
    virtual void release() = 0;

    /// Whom to tell of those that come after this one; nobody at first.
    void setOpenedHandler(OpenedHandler handler) { m_handler = std::move(handler); }

protected:
    void tellOpened(const QStringList& arguments) const {
        if (m_handler)
            m_handler(arguments);
    }

private:
    OpenedHandler m_handler;
};

/// As the platform does it that this build was made for. The application object exists.
[[nodiscard]] std::unique_ptr<SingleInstance> makeSingleInstance();

} // namespace corvanta

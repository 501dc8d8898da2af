#pragma once

#include "cli/output/Output.h"
#include "cli/run/Options.h"
#include "cli/service/ItemResolver.h"
#include "cli/service/Service.h"
#include "cli/session/Session.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace brevint::cli {

/// What a command works with during one run.
class Context {
public:
    explicit Context(Options options);

    const Options& Settings() const { return m_options; }
    const Output& Out() const { return m_output; }

    /// The longest time to wait for one thing.
    std::chrono::seconds Timeout() const { return std::chrono::seconds(m_options.timeoutSeconds); }

    /// The session with the service of --url, without cookies if it is not the one signed in to, or
    /// with the one signed in to. Throws a Failure when there is neither.
    const Session& TheSession();

    /// The service of that session.
    Service& TheService();

    /// Finds items at that service.
    ItemResolver& Items();

private:
    const Options m_options;
    const Output m_output;
    std::optional<Session> m_session;
    std::shared_ptr<Service> m_service; ///< Shared with calls that are left behind.
    std::unique_ptr<ItemResolver> m_items;
};

} // namespace brevint::cli

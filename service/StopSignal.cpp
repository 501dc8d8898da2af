#include <utility> // Boost.Asio's headers count on it

#include "service/StopSignal.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include <csignal>

namespace brevint::service {

struct StopSignal::Listener {
    boost::asio::io_context context;
    boost::asio::signal_set signals{context, SIGINT, SIGTERM};
};

StopSignal::StopSignal() : m_listener(std::make_unique<Listener>()) {
    m_listener->signals.async_wait([](const boost::system::error_code&, int) {});
}

StopSignal::~StopSignal() = default;

void StopSignal::Wait() {
    m_listener->context.run();
}

} // namespace brevint::service

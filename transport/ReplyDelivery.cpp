#include "transport/ReplyDelivery.h"

#include "brevint/IResponse.h"

#include <new>

void DeliverReply(IResponse& response, const std::vector<char>& bytes,
                  unsigned long status) noexcept {
    try {
        response.SetServerResponse(bytes, status);
    } catch (const std::bad_alloc&) {
        response.SetServerResponse({}, status);
    }
}

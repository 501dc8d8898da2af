#include "proxies/CallService.h"

#include "brevint/IRequest.h"
#include "brevint/IRequestFactory.h"
#include "transport/ReplyDelivery.h"

#include <memory>
#include <new>

void CallService(IRequestFactory& factory, IRequestInfo& info, IResponse& response) noexcept {
    std::vector<char> bytes;
    unsigned long status = 0;
    std::unique_ptr<IRequest> request;
    try {
        request.reset(factory.Create());
        request->SendRequest(&info);
        status = request->GetRequestStatus();
        request->GetRequestedData(bytes);
    } catch (const std::bad_alloc&) {
        bytes.clear();
    }
    DeliverReply(response, bytes, status);
}

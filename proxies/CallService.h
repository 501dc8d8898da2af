#pragma once

class IRequestFactory;
class IRequestInfo;
class IResponse;

/// Carries out one synchronous exchange with a request of its own: sends what `info` describes and
/// fills `response` with the reply, an empty one when anything fails.
void CallService(IRequestFactory& factory, IRequestInfo& info, IResponse& response) noexcept;

#include "requests/PollFileStatusRequestInfo.h"

#include "support/Text.h"

CPollFileStatusRequestInfo::CPollFileStatusRequestInfo(const std::wstring& baseUrl,
                                                       const std::wstring& jobId)
    : CServiceRequestInfo(
          {WebRequestTypeGet, AcceptTypeXml, 0}, baseUrl,
          BaseHlpr::StringReplace(L"Repository/Jobs/%JOBID%", L"%JOBID%", jobId.c_str())) {}

#include "brevint/brevint.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace brevint::test {
namespace {

/// Checks that an object is a proxy of that class, and destroys it through its interface.
template <class Interface, class Proxy>
void ExpectProxy(void* object) {
    const std::unique_ptr<Interface> proxy(static_cast<Interface*>(object));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(static_cast<void*>(dynamic_cast<Proxy*>(proxy.get())), object);
}

// The identifiers as they lie in memory: the first three fields have their lowest byte first.
const struct {
    const GUID& iid;
    std::string bytes;
    void (*expectProxy)(void* object);
} kInterfaces[] = {
    {IID_ISignInProxy, "\x9D\xB9\x98\x07\xC9\x98\x5F\x42\x8C\x71\xE1\xE8\xE3\xA4\x68\xD9",
     ExpectProxy<ISignInProxy, CSignInProxy>},
    {IID_IRepositoryProxy, "\x23\xDB\xB9\xD6\x97\xD0\x88\x47\xB2\x24\xC5\xF6\x89\x3D\xD4\xC2",
     ExpectProxy<IRepositoryProxy, CRepositoryProxy>},
    {IID_IIdentityProxy, "\x17\x6A\xDE\x32\xFB\x97\xC8\x4B\xA0\x4F\x67\x32\x0D\xBD\xB0\xBF",
     ExpectProxy<IIdentityProxy, CIdentityProxy>},
    {IID_ITemplateProxy, "\xD1\x49\xAA\x7F\xF2\xC7\x7B\x43\xB3\xBF\xE5\x6D\xF4\x63\xBA\x28",
     ExpectProxy<ITemplateProxy, CTemplateProxy>},
    {IID_ISignOutProxy, "\x8E\x14\x2F\x43\xA9\x48\xA7\x4B\xBA\xEC\xA8\xAF\x5F\xBC\x53\x4D",
     ExpectProxy<ISignOutProxy, CSignOutProxy>},
};

TEST(ProxyFactory, MakesANewProxyForEachIdentifierAndNoOther) {
    CProxyFactory factory;
    const auto create = [&factory](std::string bytes, std::size_t changed = 16) {
        if (changed < bytes.size()) {
            bytes[changed] ^= 0x40;
        }
        GUID guid;
        std::memcpy(&guid, bytes.data(), sizeof guid);
        void* object = &factory;
        const int made = factory.Create(guid, &object);
        EXPECT_EQ(made, object ? 1 : 0);
        return object;
    };
    EXPECT_EQ(create(std::string(16, '\0')), nullptr);
    for (const auto& row : kInterfaces) {
        ASSERT_EQ(row.bytes.size(), sizeof(GUID));
        EXPECT_EQ(std::memcmp(&row.iid, row.bytes.data(), sizeof(GUID)), 0);
        row.expectProxy(create(row.bytes));
        for (std::size_t i = 0; i < row.bytes.size(); ++i) {
            EXPECT_EQ(create(row.bytes, i), nullptr);
        }
    }
}

} // namespace
} // namespace brevint::test

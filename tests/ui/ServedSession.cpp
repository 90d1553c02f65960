#include "tests/ui/ServedSession.h"

#include <atomic>
#include <stdexcept>
#include <utility>

// Not in an unnamed namespace: the compiler would take calls through the interface for unreachable.
class ServedSessionFactory : public IClassFactory
{
public:
    explicit ServedSessionFactory(ServedSession::Maker make) : make(std::move(make)) {}

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override
    {
        const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IClassFactory;
        *object = known ? this : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --references;
        if (!left)
            delete this;
        return left;
    }

    STDMETHODIMP CreateInstance(IUnknown*, REFIID interfaceId, void** object) override
    {
        const CRDOSession session = make();
        *object = nullptr;
        return session ? session.GetDispatch()->QueryInterface(interfaceId, object) : E_FAIL;
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

private:
    virtual ~ServedSessionFactory() = default;

    ServedSession::Maker make;
    std::atomic<ULONG> references{1};
};

ServedSession::ServedSession(Maker make)
{
    *factory.ReleaseAndGetAddressOf() = new ServedSessionFactory(std::move(make));
    CLSID id{};
    if (FAILED(::CLSIDFromProgID(CRDOSession::progId, &id)) ||
        FAILED(::CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                       &registration)))
        throw std::runtime_error("the session's class cannot be served");
}

ServedSession::~ServedSession()
{
    ::CoRevokeClassObject(registration);
}

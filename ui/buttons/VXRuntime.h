#pragma once

#include <QByteArray>

#include <functional>
#include <map>

// The few exchangeable instance methods of a class: selector → implementation. C++ has no
// run-time method table, so a class that lets an addition replace one of its entries keeps
// one of these and dispatches that entry through it.
template <typename Signature> class VXMethodTable
{
public:
    using Implementation = std::function<Signature>;

    // A missing method yields a missing (empty) implementation.
    Implementation implementation(const QByteArray &selector) const
    {
        const auto it = _methods.find(selector);
        return it == _methods.end() ? Implementation() : it->second;
    }
    void replaceMethod(const QByteArray &selector, Implementation implementation)
    {
        _methods[selector] = std::move(implementation);
    }
    bool hasMethod(const QByteArray &selector) const
    {
        return static_cast<bool>(implementation(selector));
    }

private:
    std::map<QByteArray, Implementation> _methods;
};

// Does nothing and answers the zero value of the result type (nil, NO, 0).
template <typename Signature> struct VXEmptyMethodImplementationOf;
template <typename Result, typename... Args> struct VXEmptyMethodImplementationOf<Result(Args...)>
{
    static Result call(Args...) { return Result(); }
};
template <typename Signature> std::function<Signature> VXEmptyMethodImplementation()
{
    return &VXEmptyMethodImplementationOf<Signature>::call;
}

// Installs under `first` what `second` had and under `second` what `first` had; a selector
// whose method was missing gets the empty implementation, so no selector is left without one.
template <typename Signature>
void VXExchangeMethodImplementations(VXMethodTable<Signature> &cls, const QByteArray &first,
                                     const QByteArray &second)
{
    auto firstImplementation = cls.implementation(first);
    auto secondImplementation = cls.implementation(second);
    cls.replaceMethod(first, secondImplementation ? secondImplementation
                                                  : VXEmptyMethodImplementation<Signature>());
    cls.replaceMethod(second, firstImplementation ? firstImplementation
                                                  : VXEmptyMethodImplementation<Signature>());
}

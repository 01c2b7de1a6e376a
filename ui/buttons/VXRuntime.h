#pragma once

#include <QByteArray>

#include <functional>
#include <map>

/**
 * \file
 * Exchangeable methods: VXMethodTable and the routines that exchange its entries.
 */

/**
 * The few exchangeable methods of a class: selector (a name) → implementation. C++ has no
 * run-time method table, so a class that lets an addition replace one of its entries keeps
 * one of these and dispatches that entry through it (ButtonCell::methods()).
 */
template <typename Signature> class VXMethodTable
{
public:
    /** A method's body: any callable of the signature; empty for a missing method. */
    using Implementation = std::function<Signature>;

    /** The implementation under selector; an empty one for a missing method. */
    Implementation implementation(const QByteArray &selector) const
    {
        const auto it = _methods.find(selector);
        return it == _methods.end() ? Implementation() : it->second;
    }
    /** Installs implementation under selector, replacing what was there. */
    void replaceMethod(const QByteArray &selector, Implementation implementation)
    {
        _methods[selector] = std::move(implementation);
    }
    /** Whether selector has a (non-empty) implementation. */
    bool hasMethod(const QByteArray &selector) const
    {
        return static_cast<bool>(implementation(selector));
    }

private:
    std::map<QByteArray, Implementation> _methods;
};

/** The body of the empty method of a signature (see VXEmptyMethodImplementation). */
template <typename Signature> struct VXEmptyMethodImplementationOf;
/** The empty method of a function signature. */
template <typename Result, typename... Args> struct VXEmptyMethodImplementationOf<Result(Args...)>
{
    /** Does nothing and answers the result type's zero value (nullptr, false, 0). */
    static Result call(Args...) { return Result(); }
};
/** A method that does nothing and answers the result type's zero value (nullptr, false, 0). */
template <typename Signature> std::function<Signature> VXEmptyMethodImplementation()
{
    return &VXEmptyMethodImplementationOf<Signature>::call;
}

/**
 * Installs under first what second had and under second what first had; a selector whose
 * method was missing gets the empty implementation, so no selector is left without one.
 */
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

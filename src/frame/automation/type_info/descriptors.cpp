#include "frame/automation/type_info/descriptors.h"

#include "frame/automation/abi.h"

#include <algorithm>
#include <array>
#include <deque>
#include <memory>

namespace orvane::automation {

namespace {

constexpr MEMBERID kFirstConstant = 0x40000000;
constexpr MEMBERID kFirstOfUnknown = 0x60000000;
constexpr MEMBERID kFirstOfDispatch = 0x60010000;
constexpr std::size_t kUnknownFunctions = 3;
constexpr std::size_t kInherited = 7;
constexpr std::size_t kMostInheritedNames = 10;

/// A parameter of an inherited function: `stars` pointers to `type`; VT_VOID stands for the
/// structures that a type library would describe.
struct InheritedParameter {
    VARTYPE type;
    int stars;
    USHORT flags;
};

struct InheritedFunction {
    const char* names[kMostInheritedNames];
    VARTYPE result;
    std::array<InheritedParameter, kMostInheritedNames - 2> parameters;
};

constexpr InheritedFunction kInheritedFunctions[kInherited] = {
    {{"QueryInterface", "riid", "ppvObj"},
     VT_VOID,
     {{{VT_VOID, 1, PARAMFLAG_FIN}, {VT_VOID, 2, PARAMFLAG_FOUT}}}},
    {{"AddRef"}, VT_UI4, {}},
    {{"Release"}, VT_UI4, {}},
    {{"GetTypeInfoCount", "pctinfo"}, VT_VOID, {{{VT_UINT, 1, PARAMFLAG_FOUT}}}},
    {{"GetTypeInfo", "itinfo", "lcid", "pptinfo"},
     VT_VOID,
     {{{VT_UINT, 0, PARAMFLAG_FIN}, {VT_UI4, 0, PARAMFLAG_FIN}, {VT_VOID, 2, PARAMFLAG_FOUT}}}},
    {{"GetIDsOfNames", "riid", "rgszNames", "cNames", "lcid", "rgdispid"},
     VT_VOID,
     {{{VT_VOID, 1, PARAMFLAG_FIN},
       {VT_UI2, 2, PARAMFLAG_FIN},
       {VT_UINT, 0, PARAMFLAG_FIN},
       {VT_UI4, 0, PARAMFLAG_FIN},
       {VT_I4, 1, PARAMFLAG_FOUT}}}},
    {{"Invoke", "dispidMember", "riid", "lcid", "wFlags", "pdispparams", "pvarResult", "pexcepinfo",
      "puArgErr"},
     VT_VOID,
     {{{VT_I4, 0, PARAMFLAG_FIN},
       {VT_VOID, 1, PARAMFLAG_FIN},
       {VT_UI4, 0, PARAMFLAG_FIN},
       {VT_UI2, 0, PARAMFLAG_FIN},
       {VT_VOID, 1, PARAMFLAG_FIN},
       {VT_VARIANT, 1, PARAMFLAG_FOUT},
       {VT_VOID, 1, PARAMFLAG_FOUT},
       {VT_UINT, 1, PARAMFLAG_FOUT}}}},
};

MEMBERID inheritedId(std::size_t index) {
    return index < kUnknownFunctions
               ? kFirstOfUnknown + static_cast<MEMBERID>(index)
               : kFirstOfDispatch + static_cast<MEMBERID>(index - kUnknownFunctions);
}

struct FunctionBlock : FUNCDESC {
    FunctionBlock() : FUNCDESC{} {}
    ~FunctionBlock() {
        for (PARAMDESCEX& fallback : defaults)
            VariantClear(&fallback.varDefaultValue);
    }
    FunctionBlock(const FunctionBlock&) = delete;
    FunctionBlock& operator=(const FunctionBlock&) = delete;

    std::vector<ELEMDESC> parameters;
    std::deque<TYPEDESC> types;
    std::deque<PARAMDESCEX> defaults;

    TYPEDESC pointerTo(const TYPEDESC& target, VARTYPE kind = VT_PTR) {
        types.push_back(target);
        TYPEDESC type{};
        type.lptdesc = &types.back();
        type.vt = kind;
        return type;
    }
};

struct ConstantBlock : VARDESC {
    ConstantBlock() : VARDESC{} {}
    VARIANT value{};
};

TYPEDESC plainType(VARTYPE type) {
    TYPEDESC described{};
    described.vt = type;
    return described;
}

TYPEDESC referenceType(HREFTYPE reference) {
    TYPEDESC described{};
    described.hreftype = reference;
    described.vt = VT_USERDEFINED;
    return described;
}

TYPEDESC describeType(FunctionBlock& block, const TypeReference& type) {
    TYPEDESC described =
        plainType(type.type == VT_EMPTY ? static_cast<VARTYPE>(VT_VOID) : type.type);
    if ((type.type & VT_ARRAY) != 0) {
        const auto element = plainType(static_cast<VARTYPE>(type.type & VT_TYPEMASK));
        described = block.pointerTo(element, VT_SAFEARRAY);
    } else if (type.classTable != nullptr) {
        described = block.pointerTo(referenceType(referenceTo(type.classTable())));
    } else if (type.enumTable != nullptr) {
        described = referenceType(referenceTo(type.enumTable()));
    } else if (type.hostInterface != HostInterface::none) {
        described = block.pointerTo(referenceType(referenceTo(type.hostInterface)));
    }
    return type.byReference ? block.pointerTo(described) : described;
}

void describeDefault(VARIANT& value, const Parameter& parameter) {
    if (parameter.fallback.kind == DefaultValue::Kind::text) {
        value.bstrVal = newBstr(WStringView(parameter.fallback.text));
        value.vt = VT_BSTR;
    } else if (parameter.type.type == VT_BOOL) {
        value.boolVal = parameter.fallback.number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
        value.vt = VT_BOOL;
    } else if (parameter.type.type == VT_I2) {
        value.iVal = static_cast<SHORT>(parameter.fallback.number);
        value.vt = VT_I2;
    } else {
        value.lVal = parameter.fallback.number;
        value.vt = VT_I4;
    }
}

ELEMDESC describeParameter(FunctionBlock& block, const Parameter& parameter) {
    ELEMDESC described{};
    described.tdesc = describeType(block, parameter.type);
    unsigned flags = PARAMFLAG_FIN;
    if (parameter.type.byReference) flags |= PARAMFLAG_FOUT;
    if (parameter.isOptional) flags |= PARAMFLAG_FOPT;
    described.paramdesc.pparamdescex = nullptr;
    if (parameter.fallback.kind != DefaultValue::Kind::none) {
        flags |= PARAMFLAG_FHASDEFAULT;
        PARAMDESCEX& fallback = block.defaults.emplace_back();
        fallback.cBytes = sizeof(PARAMDESCEX);
        describeDefault(fallback.varDefaultValue, parameter);
        described.paramdesc.pparamdescex = &fallback;
    }
    described.paramdesc.wParamFlags = static_cast<USHORT>(flags);
    return described;
}

INVOKEKIND invokeKind(MemberKind kind) {
    switch (kind) {
    case MemberKind::propertyGet:
        return INVOKE_PROPERTYGET;
    case MemberKind::propertyPut:
        return INVOKE_PROPERTYPUT;
    case MemberKind::propertyPutReference:
        return INVOKE_PROPERTYPUTREF;
    default:
        return INVOKE_FUNC;
    }
}

void describeMember(FunctionBlock& block, const Member& member) {
    for (const Parameter& parameter : member.parameters) {
        block.parameters.push_back(describeParameter(block, parameter));
    }
    const auto optional = std::ranges::count_if(member.parameters, &Parameter::isOptional);
    block.memid = member.id;
    block.invkind = invokeKind(member.kind);
    block.cParamsOpt = static_cast<SHORT>(member.isVariableArgument ? -1 : optional);
    block.elemdescFunc.tdesc = describeType(block, member.result);
    block.wFuncFlags = member.id == DISPID_NEWENUM ? FUNCFLAG_FRESTRICTED : WORD{0};
}

void describeInherited(FunctionBlock& block, std::size_t index) {
    const InheritedFunction& function = kInheritedFunctions[index];
    for (std::size_t i = 0; function.names[i + 1] != nullptr; ++i) {
        const InheritedParameter& given = function.parameters[i];
        ELEMDESC described{};
        described.tdesc = plainType(given.type);
        for (int star = 0; star < given.stars; ++star) {
            described.tdesc = block.pointerTo(described.tdesc);
        }
        described.paramdesc.wParamFlags = given.flags;
        block.parameters.push_back(described);
    }
    block.memid = inheritedId(index);
    block.invkind = INVOKE_FUNC;
    block.elemdescFunc.tdesc = plainType(function.result);
    block.wFuncFlags = FUNCFLAG_FRESTRICTED;
}

WORD typeFlags(const TypeDescription& type) {
    if (type.kind == TKIND_COCLASS) return static_cast<WORD>(type.classTable->instancing);
    if (type.isDual()) {
        return TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FDISPATCHABLE;
    }
    if (type.events != nullptr) return TYPEFLAG_FHIDDEN | TYPEFLAG_FDISPATCHABLE;
    return 0;
}

WORD implementedTypes(const TypeDescription& type) {
    if (type.kind == TKIND_DISPATCH) return 1;
    if (type.kind != TKIND_COCLASS) return 0;
    return type.classTable->events.name != nullptr ? 2 : 1;
}

}  // namespace

std::size_t inheritedFunctions(const TypeDescription& type) {
    return type.isDual() ? kInherited : 0;
}

std::size_t functionCount(const TypeDescription& type) {
    const auto* members = type.members();
    return members == nullptr ? 0 : inheritedFunctions(type) + members->size();
}

TYPEATTR* newTypeAttributes(const TypeDescription& type) {
    auto* attributes = new TYPEATTR{};
    attributes->guid = type.guid;
    attributes->memidConstructor = MEMBERID_NIL;
    attributes->memidDestructor = MEMBERID_NIL;
    attributes->cbSizeInstance = type.kind == TKIND_ENUM ? sizeof(LONG) : sizeof(void*);
    attributes->typekind = type.kind;
    attributes->cFuncs = static_cast<WORD>(functionCount(type));
    attributes->cVars = static_cast<WORD>(type.enumTable ? type.enumTable->constants.size() : 0);
    attributes->cImplTypes = implementedTypes(type);
    attributes->cbSizeVft =
        static_cast<WORD>(type.kind == TKIND_DISPATCH ? kInherited * sizeof(void*) : 0);
    attributes->cbAlignment = type.kind == TKIND_ENUM ? alignof(LONG) : alignof(void*);
    attributes->wTypeFlags = typeFlags(type);
    if (type.kind == TKIND_ALIAS) {
        attributes->tdescAlias = referenceType(referenceTo(*type.classTable));
    }
    return attributes;
}

void freeTypeAttributes(TYPEATTR* attributes) {
    delete attributes;
}

FUNCDESC* newFunction(const TypeDescription& type, std::size_t index) {
    auto block = std::make_unique<FunctionBlock>();
    const std::size_t inherited = inheritedFunctions(type);
    if (index < inherited) {
        describeInherited(*block, index);
    } else {
        describeMember(*block, (*type.members())[index - inherited]);
    }
    block->lprgelemdescParam = block->parameters.data();
    block->cParams = static_cast<SHORT>(block->parameters.size());
    block->funckind = FUNC_DISPATCH;
    block->callconv = CC_STDCALL;
    block->oVft = static_cast<SHORT>(type.isDual() ? index * sizeof(void*) : 0);
    return block.release();
}

void freeFunction(FUNCDESC* function) {
    delete static_cast<FunctionBlock*>(function);
}

VARDESC* newConstant(const EnumTable& table, std::size_t index) {
    auto* block = new ConstantBlock;
    block->value.vt = VT_I4;
    block->value.lVal = table.constants[index].value;
    block->memid = constantId(index);
    block->lpvarValue = &block->value;
    block->elemdescVar.tdesc.vt = VT_INT;
    block->varkind = VAR_CONST;
    return block;
}

void freeConstant(VARDESC* constant) {
    delete static_cast<ConstantBlock*>(constant);
}

MEMBERID constantId(std::size_t index) {
    return kFirstConstant + static_cast<MEMBERID>(index);
}

const char* const* inheritedNames(MEMBERID id) {
    for (std::size_t i = 0; i < kInherited; ++i) {
        if (inheritedId(i) == id) return kInheritedFunctions[i].names;
    }
    return nullptr;
}

}  // namespace orvane::automation

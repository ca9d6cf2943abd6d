#include "base/Xml.h"

#include "base/Failure.h"

#include <shlwapi.h>
#include <xmllite.h>

#include <bit>

namespace DevHost {
namespace {

using Qorv::ComPtr;

constexpr std::size_t max_depth = 64;

[[noreturn]] void ThrowMalformed(const std::wstring& i_why) {
    throw Failure(E_INVALIDARG, L"The XML document is not well-formed: " + i_why);
}

/// XmlLite is part of the system, but the compiler has no import library for it.
ComPtr<IXmlReader> CreateReader() {
    using CreateXmlReaderFunction = HRESULT(STDMETHODCALLTYPE*)(REFIID, void**, IMalloc*);
    const HMODULE library = LoadLibraryW(L"xmllite.dll");
    const FARPROC function = library != nullptr ? GetProcAddress(library, "CreateXmlReader") : nullptr;
    if (function == nullptr)
        throw LastErrorFailure(L"Cannot load xmllite.dll");
    const auto create = std::bit_cast<CreateXmlReaderFunction>(function);
    ComPtr<IXmlReader> reader;
    Check(create(__uuidof(IXmlReader), reinterpret_cast<void**>(&reader), nullptr), L"Cannot create an XML reader");
    reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit);
    return reader;
}

std::wstring LocalName(IXmlReader* i_reader) {
    const wchar_t* name = nullptr;
    UINT length = 0;
    Check(i_reader->GetLocalName(&name, &length), L"Cannot read XML");
    return {name, length};
}

std::wstring Value(IXmlReader* i_reader) {
    const wchar_t* value = nullptr;
    UINT length = 0;
    Check(i_reader->GetValue(&value, &length), L"Cannot read XML");
    return {value, length};
}

XmlElement ReadStart(IXmlReader* i_reader) {
    XmlElement element;
    element.name = LocalName(i_reader);
    for (HRESULT result = i_reader->MoveToFirstAttribute(); result == S_OK; result = i_reader->MoveToNextAttribute())
        element.attributes[LocalName(i_reader)] = Value(i_reader);
    i_reader->MoveToElement();
    return element;
}

} // namespace

std::wstring XmlElement::Attribute(const std::wstring& i_name) const {
    const auto found = attributes.find(i_name);
    return found != attributes.end() ? found->second : std::wstring();
}

XmlElement ParseXml(const void* i_data, std::size_t i_size) {
    ComPtr<IStream> stream;
    stream.Attach(SHCreateMemStream(static_cast<const BYTE*>(i_data), static_cast<UINT>(i_size)));
    if (stream == nullptr)
        throw std::bad_alloc();
    const ComPtr<IXmlReader> reader = CreateReader();
    Check(reader->SetInput(stream), L"Cannot read XML");

    XmlElement document;                      // Its only child is the root.
    std::vector<XmlElement*> open{&document}; // From the document down to the element being read.
    XmlNodeType type = XmlNodeType_None;
    HRESULT result = S_OK;
    while ((result = reader->Read(&type)) == S_OK) {
        if (type == XmlNodeType_Element) {
            const bool is_empty = reader->IsEmptyElement();
            if (open.size() > max_depth)
                ThrowMalformed(L"it is nested too deeply");
            open.back()->children.push_back(ReadStart(reader));
            if (!is_empty)
                open.push_back(&open.back()->children.back());
        } else if (type == XmlNodeType_EndElement) {
            open.pop_back();
        } else if (type == XmlNodeType_Text || type == XmlNodeType_CDATA || type == XmlNodeType_Whitespace) {
            open.back()->text += Value(reader);
        }
    }
    if (FAILED(result))
        ThrowMalformed(CodeInWords(result));
    if (open.size() != 1 || document.children.size() != 1)
        ThrowMalformed(L"it must have one root element");
    return std::move(document.children.front());
}

} // namespace DevHost

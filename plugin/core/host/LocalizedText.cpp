#include "core/host/LocalizedText.h"

#include "core/trace/Trace.h"
#include "qorv/Values.h"

std::wstring Ui::LocalizedText(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id) {
    TRACE_FUNCTION();
    Qorv::Bstr text;
    return SUCCEEDED(host_instance->GetLocalStr(i_id, &text)) ? std::wstring(text.View()) : std::wstring(i_id);
}

std::wstring Ui::FormatString(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id,
                              std::initializer_list<std::wstring_view> i_arguments) {
    TRACE_FUNCTION();
    const std::wstring format = LocalizedText(host_instance, i_id);
    std::wstring text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const wchar_t digit = format[i] == L'%' && i + 1 < format.size() ? format[i + 1] : L'\0';
        const auto index = static_cast<std::size_t>(digit - L'1');
        if (digit >= L'1' && digit <= L'9' && index < i_arguments.size()) {
            text += i_arguments.begin()[index];
            ++i;
        } else {
            text += format[i];
        }
    }
    return text;
}

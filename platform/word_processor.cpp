#include "word_processor.h"

#include "rtf_word_processor.h"

EWordProcessorError::EWordProcessorError(const QString &message) : std::runtime_error(message.toStdString()) {}

QString EWordProcessorError::Message() const
{
    return QString::fromUtf8(what());
}

namespace {

std::function<std::unique_ptr<WordProcessor>()> &factory()
{
    static std::function<std::unique_ptr<WordProcessor>()> installed;
    return installed;
}

} // namespace

std::unique_ptr<WordProcessor> WordProcessor::Create()
{
    if (factory())
        return factory()();
    return std::make_unique<RtfWordProcessor>();
}

void WordProcessor::InstallFactory(std::function<std::unique_ptr<WordProcessor>()> factory_)
{
    factory() = std::move(factory_);
}

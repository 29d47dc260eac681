#include "diskusage/ui/OffscreenGl.h"

#include "diskusage/ui/GlCanvas.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int samples = 8;
// A painter's edges are exact, those of a few samples are not: the chart is drawn larger and made
// smaller, the more so the fewer samples there are.
constexpr int usualEnlargement = 2;
constexpr int enlargementOfFewSamples = 4;
// What Mesa's drivers without a graphics card call themselves, and others' like them.
constexpr const char *softwareNames[] = {"llvmpipe", "softpipe", "swrast", "software"};

// A buffer to draw in and one to read from, as OpenGL averages the samples on the way.
class Buffers {
public:
    Buffers(QOpenGLExtraFunctions &gl, QSize size, int samplesHere) : m_gl(gl), m_size(size) {
        m_gl.glGenFramebuffers(2, m_frames);
        m_gl.glGenRenderbuffers(2, m_colours);
        for (const int i : {0, 1}) {
            m_gl.glBindRenderbuffer(GL_RENDERBUFFER, m_colours[i]);
            m_gl.glRenderbufferStorageMultisample(GL_RENDERBUFFER, i == 0 ? samplesHere : 0,
                                                  GL_RGBA8, size.width(), size.height());
            m_gl.glBindFramebuffer(GL_FRAMEBUFFER, m_frames[i]);
            m_gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                           m_colours[i]);
            m_isWhole = m_isWhole &&
                        m_gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
        }
        m_gl.glBindFramebuffer(GL_FRAMEBUFFER, m_frames[0]);
    }
    ~Buffers() {
        m_gl.glBindFramebuffer(GL_FRAMEBUFFER, 0);
        m_gl.glDeleteFramebuffers(2, m_frames);
        m_gl.glDeleteRenderbuffers(2, m_colours);
    }

    bool isWhole() const { return m_isWhole; }

    QImage read() {
        const int width = m_size.width();
        const int height = m_size.height();
        m_gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, m_frames[0]);
        m_gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_frames[1]);
        m_gl.glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                               GL_NEAREST);
        m_gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, m_frames[1]);
        // Averaged with what is transparent, the colours have their alpha in them.
        QImage image(m_size, QImage::Format_RGBA8888_Premultiplied);
        m_gl.glPixelStorei(GL_PACK_ALIGNMENT, 4);
        m_gl.glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
        return image.mirrored().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }

private:
    QOpenGLExtraFunctions &m_gl;
    const QSize m_size;
    GLuint m_frames[2] = {};
    GLuint m_colours[2] = {};
    bool m_isWhole = true;
};

} // namespace

OffscreenGl::OffscreenGl() = default;
OffscreenGl::~OffscreenGl() {
    if (m_context && m_context->makeCurrent(m_surface.get()))
        m_context->doneCurrent();
}

std::unique_ptr<OffscreenGl> OffscreenGl::make() {
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    std::unique_ptr<OffscreenGl> made(new OffscreenGl);
    made->m_context = std::make_unique<QOpenGLContext>();
    made->m_context->setFormat(format);
    made->m_surface = std::make_unique<QOffscreenSurface>();
    made->m_surface->setFormat(format);
    made->m_surface->create();
    if (!made->m_context->create() || made->m_context->isOpenGLES() ||
        made->m_context->format().profile() == QSurfaceFormat::CoreProfile ||
        !made->m_context->makeCurrent(made->m_surface.get()))
        return nullptr;
    const auto *const name = made->m_context->functions()->glGetString(GL_RENDERER);
    made->m_renderer = QString::fromUtf8(reinterpret_cast<const char *>(name));
    const auto needed = QOpenGLFunctions::Framebuffers | QOpenGLFunctions::Multisample;
    if (made->m_context->functions()->openGLFeatures().testFlags(needed))
        made->m_canvas = GlCanvas::make();
    made->m_context->doneCurrent();
    return made->m_canvas ? std::move(made) : nullptr;
}

bool OffscreenGl::isSoftware() const {
    return std::any_of(std::begin(softwareNames), std::end(softwareNames),
                       [this](const char *name) {
                           return m_renderer.contains(QLatin1String(name), Qt::CaseInsensitive);
                       });
}

QImage OffscreenGl::paint(QSize pixels, double lineWidth, const std::function<void(QSize)> &draw) {
    if (pixels.isEmpty() || !m_context->makeCurrent(m_surface.get()))
        return {};
    QImage image;
    {
        QOpenGLExtraFunctions &gl = *m_context->extraFunctions();
        GLint most = 0;
        gl.glGetIntegerv(GL_MAX_SAMPLES, &most);
        const int scale = most < samples ? enlargementOfFewSamples : usualEnlargement;
        Buffers buffers(gl, pixels * scale, std::min(samples, int(most)));
        if (buffers.isWhole()) {
            gl.glEnable(GL_MULTISAMPLE);
            gl.glClearColor(0, 0, 0, 0);
            gl.glClear(GL_COLOR_BUFFER_BIT);
            m_canvas->lineWidth(float(lineWidth * scale));
            const ChartCanvas::Use use(*m_canvas);
            draw(pixels * scale);
            image = buffers.read().scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        }
    }
    m_context->doneCurrent();
    return image;
}

} // namespace brightsweep

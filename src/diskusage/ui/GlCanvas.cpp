#include "diskusage/ui/GlCanvas.h"

#include <QLibrary>
#include <qopengl.h>

#include <optional>

namespace brightsweep {

namespace {

// Of GLU, whose headers nothing else would need.
constexpr GLenum gluFill = 100012;
constexpr GLenum gluSilhouette = 100013;
constexpr GLenum gluNoNormals = 100002;

template <typename Function>
bool resolve(QLibrary &library, const char *name, Function *&function) {
    function = reinterpret_cast<Function *>(library.resolve(name));
    return function != nullptr;
}

} // namespace

struct GlCanvas::Functions {
    void *(*newQuadric)();
    void (*deleteQuadric)(void *);
    void (*quadricDrawStyle)(void *, GLenum);
    void (*quadricNormals)(void *, GLenum);
    void (*partialDisk)(void *, GLdouble, GLdouble, GLint, GLint, GLdouble, GLdouble);
    void (*ortho2D)(GLdouble, GLdouble, GLdouble, GLdouble);
    void (*color3ub)(GLubyte, GLubyte, GLubyte);
    void (*color3d)(GLdouble, GLdouble, GLdouble);
    void (*matrixMode)(GLenum);
    void (*pushMatrix)();
    void (*popMatrix)();
    void (*loadIdentity)();
    void (*translated)(GLdouble, GLdouble, GLdouble);
    void (*viewport)(GLint, GLint, GLsizei, GLsizei);
    void (*clearColor)(GLfloat, GLfloat, GLfloat, GLfloat);
    void (*clear)(GLbitfield);
    void (*flush)();
    void (*lineWidth)(GLfloat);

    static std::optional<Functions> load() {
        QLibrary gl(QStringLiteral("GL"), 1);
        QLibrary glu(QStringLiteral("GLU"), 1);
        Functions f{};
        const bool isWhole =
            resolve(glu, "gluNewQuadric", f.newQuadric) &&
            resolve(glu, "gluDeleteQuadric", f.deleteQuadric) &&
            resolve(glu, "gluQuadricDrawStyle", f.quadricDrawStyle) &&
            resolve(glu, "gluQuadricNormals", f.quadricNormals) &&
            resolve(glu, "gluPartialDisk", f.partialDisk) &&
            resolve(glu, "gluOrtho2D", f.ortho2D) && resolve(gl, "glColor3ub", f.color3ub) &&
            resolve(gl, "glColor3d", f.color3d) && resolve(gl, "glMatrixMode", f.matrixMode) &&
            resolve(gl, "glPushMatrix", f.pushMatrix) && resolve(gl, "glPopMatrix", f.popMatrix) &&
            resolve(gl, "glLoadIdentity", f.loadIdentity) &&
            resolve(gl, "glTranslated", f.translated) && resolve(gl, "glViewport", f.viewport) &&
            resolve(gl, "glClearColor", f.clearColor) && resolve(gl, "glClear", f.clear) &&
            resolve(gl, "glFlush", f.flush) && resolve(gl, "glLineWidth", f.lineWidth);
        return isWhole ? std::optional(f) : std::nullopt;
    }
};

std::unique_ptr<GlCanvas> GlCanvas::make() {
    static const std::optional<Functions> functions = Functions::load();
    return functions ? std::unique_ptr<GlCanvas>(new GlCanvas(*functions)) : nullptr;
}

GlCanvas::~GlCanvas() = default;

void GlCanvas::lineWidth(float pixels) {
    m_gl.lineWidth(pixels);
}

ChartCanvas::Quadric *GlCanvas::newQuadric() {
    return static_cast<Quadric *>(m_gl.newQuadric());
}

void GlCanvas::deleteQuadric(Quadric *quadric) {
    m_gl.deleteQuadric(quadric);
}

void GlCanvas::quadricDrawStyle(Quadric *quadric, DrawStyle style) {
    m_gl.quadricDrawStyle(quadric, style == DrawStyle::Fill ? gluFill : gluSilhouette);
}

void GlCanvas::quadricWithoutNormals(Quadric *quadric) {
    m_gl.quadricNormals(quadric, gluNoNormals);
}

void GlCanvas::partialDisk(Quadric *quadric, double inner, double outer, int slices, int loops,
                           double start, double sweep) {
    m_gl.partialDisk(quadric, inner, outer, slices, loops, start, sweep);
}

void GlCanvas::color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    m_gl.color3ub(red, green, blue);
}

void GlCanvas::color3d(double red, double green, double blue) {
    m_gl.color3d(red, green, blue);
}

void GlCanvas::matrixMode(MatrixMode mode) {
    m_gl.matrixMode(mode == MatrixMode::ModelView ? GL_MODELVIEW : GL_PROJECTION);
}

void GlCanvas::pushMatrix() {
    m_gl.pushMatrix();
}

void GlCanvas::popMatrix() {
    m_gl.popMatrix();
}

void GlCanvas::loadIdentity() {
    m_gl.loadIdentity();
}

void GlCanvas::translated(double x, double y, double z) {
    m_gl.translated(x, y, z);
}

void GlCanvas::ortho2D(double left, double right, double bottom, double top) {
    m_gl.ortho2D(left, right, bottom, top);
}

void GlCanvas::viewport(int x, int y, int width, int height) {
    m_gl.viewport(x, y, width, height);
}

void GlCanvas::clearColor(float red, float green, float blue, float alpha) {
    m_gl.clearColor(red, green, blue, alpha);
}

void GlCanvas::clear() {
    m_gl.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void GlCanvas::flush() {
    m_gl.flush();
}

} // namespace brightsweep

// The view under states of a host that are rare or hostile, one by one and at random: state,
// pending errors and pictures stay, or one message says why nothing is drawn.
#include "zylHostTest.h"
#include "zylOddState.h"
#include "zylPropertyCollection.h"
#include "zylTestLog.h"
#include "zylViewScene.h"

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtk_glew.h>

namespace {
constexpr int Error = vtkLogger::VERBOSITY_ERROR;
using Pixels = std::vector<unsigned char>;

// Colors of the framebuffer that is bound for reading, whatever is set.
Pixels ReadPixels()
{
  GLint buffer = 0;
  glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &buffer);
  glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
  for (const GLenum name : { GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS })
  {
    glPixelStorei(name, 0);
  }
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glPixelStorei(GL_PACK_SWAP_BYTES, GL_FALSE);
  Pixels pixels(300 * 300 * 4);
  glReadPixels(0, 0, 300, 300, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer);
  return pixels;
}
} // namespace

class zylViewState : public zylHostTest
{
protected:
  void SetUp() override
  {
    zylHostTest::SetUp();
    if (this->Host)
    {
      this->Host->UseFramebuffer(300, 300);
      this->MakeScene();
    }
  }
  void TearDown() override
  {
    this->Scene = nullptr;
    zylHostTest::TearDown();
  }
  void MakeScene()
  {
    this->Scene = std::make_unique<zylViewScene>();
    this->Scene->View->SetSourceFBO(this->Host->GetFramebuffer());
  }

  // Blue, with the framebuffer's state as the host had it, then what `set` sets.
  void Clear()
  {
    const GLfloat blue[4] = { 0.0f, 0.0f, 1.0f, 1.0f };
    const GLfloat far = 1.0f;
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_RASTERIZER_DISCARD);
    glDisable(GL_FRAMEBUFFER_SRGB);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearBufferfv(GL_COLOR, 0, blue);
    glClearBufferfv(GL_DEPTH, 0, &far);
  }

  std::unique_ptr<zylViewScene> Scene;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewState, KeepsAllBitsOfMasks)
{
  this->Scene->View->Render();
  glStencilFuncSeparate(GL_FRONT, GL_ALWAYS, 1, 0xFFFFFFFFu);
  glStencilFuncSeparate(GL_BACK, GL_ALWAYS, 1, 0x80000001u);
  glStencilMaskSeparate(GL_FRONT, 0x80000000u);
  glStencilMaskSeparate(GL_BACK, 0xFFFFFFFFu);
  glPrimitiveRestartIndex(0xFFFFFFFFu);
  glSampleMaski(0, 0x80000001u);
  this->Unchanged("Render", [this] { this->Scene->View->Render(); });
}

// An error that the host has not asked for yet is still there afterwards, and only that one.
TEST_F(zylViewState, KeepsThePendingError)
{
  const struct
  {
    GLenum Error;
    std::function<void()> Raise;
  } rows[] = {
    { GL_INVALID_ENUM, [] { glEnable(GL_NONE); } },
    { GL_INVALID_VALUE, [] { glClear(~0u); } },
    { GL_INVALID_OPERATION,
      [] { glUseProgram(~0u - 1), glGetError(), glEndQuery(GL_SAMPLES_PASSED); } },
    { GL_INVALID_FRAMEBUFFER_OPERATION,
      [] {
        GLuint empty = 0;
        GLint bound = 0;
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
        glGenFramebuffers(1, &empty);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, empty);
        glClear(GL_COLOR_BUFFER_BIT);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, bound);
        glDeleteFramebuffers(1, &empty);
      } },
  };
  int change = 0;
  for (const auto& row : rows)
  {
    for (const auto& call : std::vector<std::function<void()>>{
           [this] { this->Scene->View->Render(); }, [this] { this->MakeScene(); },
           [this] { this->Scene->View->Render(); }, [&] { this->Scene->Color(++change % 2, true); },
           [this] { this->Scene->View->CaptureImage(); } })
    {
      const zylGLState before = zylGLState::Read();
      row.Raise();
      call();
      EXPECT_EQ(glGetError(), row.Error);
      EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
      EXPECT_EQ(zylGLState::Read().Difference(before), "");
    }
  }
}

// Transform feedback is paused while the view draws.
TEST_F(zylViewState, PausesTransformFeedback)
{
  if (!GLEW_VERSION_4_0)
  {
    GTEST_SKIP() << "needs OpenGL 4.0";
  }
  this->Clear();
  this->Scene->View->Render();
  const Pixels expected = ReadPixels();
  const char* source =
    "#version 150\nout float x; void main() { x = 1.0; gl_Position = vec4(0.0); }";
  const char* captured = "x";
  const GLuint shader = glCreateShader(GL_VERTEX_SHADER);
  glShaderSource(shader, 1, &source, nullptr);
  glCompileShader(shader);
  const GLuint program = glCreateProgram();
  glAttachShader(program, shader);
  glTransformFeedbackVaryings(program, 1, &captured, GL_INTERLEAVED_ATTRIBS);
  glLinkProgram(program);
  GLuint buffer = 0;
  glGenBuffers(1, &buffer);
  glBindBuffer(GL_TRANSFORM_FEEDBACK_BUFFER, buffer);
  glBufferData(GL_TRANSFORM_FEEDBACK_BUFFER, 1024, nullptr, GL_STATIC_DRAW);
  glBindBufferBase(GL_TRANSFORM_FEEDBACK_BUFFER, 0, buffer);
  this->Clear();
  glUseProgram(program);
  glBeginTransformFeedback(GL_POINTS);
  ASSERT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
  this->Scene->View->Render();
  GLint active = 0;
  GLint paused = 0;
  glGetIntegerv(GL_TRANSFORM_FEEDBACK_ACTIVE, &active);
  glGetIntegerv(GL_TRANSFORM_FEEDBACK_PAUSED, &paused);
  EXPECT_TRUE(active && !paused);
  EXPECT_EQ(ReadPixels(), expected);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
  glEndTransformFeedback();
  glUseProgram(0);
}

// What cannot be put aside: nothing is drawn and nothing lost, one message says so, and the picture
// is back when it is over.
TEST_F(zylViewState, SaysWhyNothingIsDrawn)
{
  GLuint query = 0;
  GLuint program = 0;
  const struct
  {
    const char* Message;
    std::function<void()> Begin, End;
  } rows[] = {
    { "conditional rendering is active",
      [&] {
        glGenQueries(1, &query);
        glBeginQuery(GL_SAMPLES_PASSED, query);
        glEndQuery(GL_SAMPLES_PASSED);
        glBeginConditionalRender(query, GL_QUERY_WAIT);
      },
      [] { glEndConditionalRender(); } },
    { "the current program is deleted",
      [&] {
        program = glCreateProgram();
        const char* source = "#version 130\nvoid main() { gl_Position = vec4(0.0); }";
        const GLuint shader = glCreateShader(GL_VERTEX_SHADER);
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
        glDeleteShader(shader);
        glLinkProgram(program);
        glUseProgram(program);
        glDeleteProgram(program);
      },
      [&] {
        EXPECT_TRUE(glIsProgram(program));
        glUseProgram(0);
      } },
    { "larger than", [this] { this->Scene->View->SetWindowSize(200000, 300); },
      [this] { this->Scene->View->SetWindowSize(300, 300); } },
  };
  this->Clear();
  this->Scene->View->Render();
  const Pixels expected = ReadPixels();
  int change = 0;
  for (const auto& row : rows)
  {
    zylTestLog log(vtkLogger::VERBOSITY_WARNING);
    this->Clear();
    const Pixels before = ReadPixels();
    row.Begin();
    this->Unchanged(row.Message, [&] {
      this->Scene->View->Render();
      this->Scene->View->Render();
      this->Scene->Color(++change % 2, true);
      EXPECT_EQ(this->Scene->View->CaptureImage(), nullptr);
    });
    row.End();
    EXPECT_EQ(ReadPixels(), before) << row.Message;
    EXPECT_EQ(log.Count(Error, row.Message), 1) << log.Dump();
    this->Scene->Color(false, false);
    this->Scene->View->Render();
    EXPECT_EQ(ReadPixels(), expected) << row.Message;
  }
}

// States that only compatibility contexts have.
TEST_F(zylViewState, KeepsOldStates)
{
  this->Scene = nullptr;
  this->Host = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300, false);
  ASSERT_NE(this->Host, nullptr);
  GLint profile = 0;
  glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
  if (glGetError() != GL_NO_ERROR || !(profile & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT))
  {
    GTEST_SKIP() << "this driver has no such contexts";
  }
  this->Host->UseFramebuffer(300, 300);
  this->MakeScene();
  this->Scene->Color(true, true);
  this->Clear();
  this->Scene->View->Render();
  const Pixels expected = ReadPixels();

  const GLenum scales[] = { GL_RED_SCALE, GL_GREEN_BIAS, GL_DEPTH_SCALE, GL_DEPTH_BIAS };
  this->MakeScene(); // textures are made anew
  this->Scene->Color(true, true);
  this->Clear();
  for (const GLenum name : scales)
  {
    glPixelTransferf(name, 0.25f);
  }
  this->Unchanged("Render", [this] { this->Scene->View->Render(); });
  for (const GLenum name : scales)
  {
    GLfloat value = 0.0f;
    glGetFloatv(name, &value);
    EXPECT_EQ(value, 0.25f);
    glPixelTransferf(name, name == GL_RED_SCALE || name == GL_DEPTH_SCALE ? 1.0f : 0.0f);
  }
  EXPECT_EQ(ReadPixels(), expected);

  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  const GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  this->Scene->View->Render();
  this->Scene->Color(false, false);
  GLint index = 0;
  glGetIntegerv(GL_LIST_INDEX, &index);
  EXPECT_EQ(index, static_cast<GLint>(list));
  glEndList();
  EXPECT_EQ(log.Count(Error, "a display list is being compiled"), 1) << log.Dump();
  const zylGLState before = zylGLState::Read();
  glCallList(list);
  EXPECT_EQ(zylGLState::Read().Difference(before), "") << "the list is empty";
}

namespace {
// One of the host's windows: a scene that changes, beside a second view, whose picture is always
// the same.
struct Window
{
  zylTestHost& Host;
  zylOddState Odd;
  zylViewScene Scene;
  zylViewScene Still;
  Pixels Expected;
  zylGLState Before;
  std::size_t Calls = 0;

  Window(zylTestHost& host, unsigned int seed)
    : Host(host)
    , Odd(seed)
  {
    for (zylViewScene* scene : { &this->Scene, &this->Still })
    {
      scene->View->SetSourceFBO(host.GetFramebuffer());
    }
    for (int id = 1; id <= 3; ++id)
    {
      this->Still.Boundary->GetMeshLineProperties(id)->Set("Visibility", false);
    }
    this->Still.Boundary->Update();
  }
};
} // namespace

// Sequences of public calls under random states in two contexts, with either current or none;
// ZYL_STATE_SEED and ZYL_STATE_SEQUENCES choose others and more.
TEST_F(zylViewState, StaysWhateverItIs)
{
  const char* seed = std::getenv("ZYL_STATE_SEED");
  const char* count = std::getenv("ZYL_STATE_SEQUENCES");
  const unsigned int first = seed ? std::atoi(seed) : 1;
  std::mt19937 random(first);
  const std::vector<zylViewCall> calls = zylViewCalls();
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  other->UseFramebuffer(300, 300);
  Window second(*other, first + 1);
  this->Host->MakeCurrent();
  Window one(*this->Host, first);
  Window* const windows[] = { &one, &second };
  for (Window* window : windows)
  {
    window->Host.MakeCurrent();
    this->Clear();
    window->Still.View->Render();
    window->Expected = ReadPixels();
  }
  std::string done;
  for (int i = 0; i < (count ? std::atoi(count) : 500); ++i)
  {
    for (Window* window : windows)
    {
      window->Host.MakeCurrent();
      this->Clear();
      window->Odd.Apply();
      window->Before = zylGLState::Read();
    }
    Window& subject = *windows[random() % 2];
    // In their order, with gaps: each finds what it needs.
    const zylViewCall& call = calls[subject.Calls++ % calls.size()];
    const unsigned int where = random() % 6;
    Window* current = where == 0 ? nullptr : where == 1 ? windows[&subject == &one] : &subject;
    const bool pending = current && random() % 2;
    done += std::string(call.Name) + " of " + (&subject == &one ? "1" : "2") +
      (!current                 ? ", no context"
          : current != &subject ? ", the other context"
                                : "") +
      "\n";
    current ? current->Host.MakeCurrent() : second.Host.Release();
    if (pending)
    {
      glEnable(GL_NONE);
    }
    call.Run(subject.Scene);
    if (current == &subject && subject.Scene.View && random() % 2)
    {
      subject.Scene.View->PreSelectSetup();
      subject.Scene.View->PostSelectCleanup();
    }
    for (Window* window : windows)
    {
      EXPECT_EQ(window->Host.IsCurrent(), window == current);
    }
    if (current)
    {
      current->Still.View->Render();
      EXPECT_EQ(glGetError(), static_cast<GLenum>(pending ? GL_INVALID_ENUM : GL_NO_ERROR));
    }
    for (Window* window : windows)
    {
      window->Host.MakeCurrent();
      EXPECT_EQ(zylGLState::Read().Difference(window->Before), "");
      if (window != current)
      {
        window->Still.View->Render();
        EXPECT_EQ(zylGLState::Read().Difference(window->Before), "") << "after a frame";
      }
      EXPECT_TRUE(ReadPixels() == window->Expected);
      EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }
    if (subject.Scene.View && random() % 4 == 0)
    {
      subject.Host.MakeCurrent();
      subject.Scene.View->SetSourceFBO(subject.Host.GetFramebuffer());
      subject.Scene.View->Render();
      EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }
    ASSERT_FALSE(this->HasFailure()) << "seed " << first << ", sequence " << i << ":\n" << done;
  }
}

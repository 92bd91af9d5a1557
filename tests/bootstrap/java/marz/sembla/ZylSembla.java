package marz.sembla;

public class ZylSembla {
  /** Carries the exception of a callback through native code. */
  public static class CallbackRethrowException extends RuntimeException {
    public CallbackRethrowException(RuntimeException inner) {
      super(inner);
    }

    public void rethrowException() {
      throw (RuntimeException) getCause();
    }
  }
}

package demo;

import marz.sembla.ZylSembla.CallbackRethrowException;

/** Does what its first argument says. */
public class Main {
  /** Calls {@link #fail} from native code. */
  static native void callback();

  static void fail() {
    throw new CallbackRethrowException(new IllegalArgumentException("inner"));
  }

  public static void main(String[] args) {
    String task = args.length == 0 ? "" : args[0];
    if (task.equals("throw")) {
      throw new IllegalStateException("on demand");
    }
    if (task.equals("callback")) {
      try {
        callback();
      } catch (IllegalArgumentException exception) {
        System.out.println("caught " + exception);
      }
      return;
    }
    for (String argument : args) {
      System.out.println(argument.length() + " " + argument.codePointCount(0, argument.length()));
    }
  }
}

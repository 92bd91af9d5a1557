package marz.vorlane;

/** Tells that it was asked to redirect the output. */
public class ZylJNILoader {
  public static void setRedirectStandardOutput(boolean redirect) {
    System.out.println("redirect " + redirect);
  }
}
